#pragma once

#include "platform/PanelActivation.h"

#include <QAbstractNativeEventFilter>

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
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    void windowGotFocus(std::uint32_t window);
    void broadcast(const QByteArray& message);
    [[nodiscard]] std::uint32_t atom(const char* name) const;
    [[nodiscard]] bool hasWindowManager() const;
    [[nodiscard]] bool hasCompositor() const;
    void followCompositor();
    void updateCompositing();

    xcb_connection_t* connection = nullptr; ///< Qt's; null where Qt does not draw on X11
    std::uint32_t root = 0;
    std::uint32_t compositorSelection = 0;
    int selectionNotifyEvent = -1;
    bool compositing = true;
};

} // namespace vellumry
