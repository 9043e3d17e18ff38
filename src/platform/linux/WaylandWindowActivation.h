#pragma once

#include "platform/PanelActivation.h"

#include <QByteArray>

namespace vellumry {

/// The window manners of Wayland, where the desktop alone places windows and hands out the
/// keyboard: a window gets it for a token that the desktop gave to whoever was asked for it. Main
/// thread only.
class WaylandWindowActivation final : public PanelActivation {
    Q_OBJECT

public:
    void prepareToShow(QWindow&) override {}
    void activate(QWindow& window) override;
    [[nodiscard]] bool isCompositing() const override { return true; }
    [[nodiscard]] bool arrangesWindows() const override { return false; }
    void offerToken(const QByteArray& newToken) override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void ask(QWindow& window);

    QByteArray token;
};

} // namespace vellumry
