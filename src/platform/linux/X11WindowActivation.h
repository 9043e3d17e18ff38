#pragma once

#include "platform/PanelActivation.h"

#include <QAbstractNativeEventFilter>

#include <array>
#include <cstdint>

struct xcb_connection_t;

namespace vellumry {

/// The window manners of X11, over Qt's own connection. Where Qt does not draw on X11 (another
/// platform, tests), it asks Qt for the focus and takes compositing for granted.
class X11WindowActivation final : public PanelActivation, private QAbstractNativeEventFilter {
    Q_OBJECT

public:
    /// Needs the QGuiApplication, and ends before it.
    X11WindowActivation();
    ~X11WindowActivation() override;

    void prepareToShow(QWindow& window) override;
    void activate(QWindow& window) override;
    [[nodiscard]] bool isCompositing() const override { return compositing; }
    void offerToken(const QByteArray& token) override;

private:
    /// Zero where the server did not answer.
    struct Atoms {
        std::uint32_t state = 0;
        std::uint32_t skipTaskbar = 0;
        std::uint32_t skipPager = 0;
        std::uint32_t above = 0;
        std::uint32_t activeWindow = 0;
        std::uint32_t windowManagerCheck = 0;
        std::uint32_t compositorSelection = 0;
        std::uint32_t startupInfoBegin = 0;
        std::uint32_t startupInfo = 0;
    };

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    /// A client message to the root window, with what that wish wants told.
    void askWindowManager(std::uint32_t window, std::uint32_t wish,
                          const std::array<std::uint32_t, 5>& details);
    void windowGotFocus(std::uint32_t window);
    void broadcast(const QByteArray& message);
    [[nodiscard]] Atoms internAtoms() const;
    [[nodiscard]] bool hasWindowManager() const;
    [[nodiscard]] bool hasCompositor() const;
    void followCompositor();
    void updateCompositing();

    xcb_connection_t* connection = nullptr; ///< Qt's; null where Qt does not draw on X11
    std::uint32_t root = 0;
    Atoms atoms;
    int selectionNotifyEvent = -1;
    bool compositing = true;
};

} // namespace vellumry
