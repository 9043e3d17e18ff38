#pragma once

#include <QByteArray>
#include <QObject>

class QWindow;

namespace vellumry {

/// What a floating panel needs from the desktop: the keyboard when it is raised, no entry in the
/// task bar, and whether its pixels may be translucent. Main thread only.
class PanelActivation : public QObject {
    Q_OBJECT

public:
    /// To be called with the created but hidden window, before each show.
    virtual void prepareToShow(QWindow& window) = 0;

    /// To be called right after show: asks for the keyboard.
    virtual void activate(QWindow& window) = 0;

    /// Whether translucent pixels let through what lies below. Without it windows are masked.
    [[nodiscard]] virtual bool isCompositing() const = 0;

    /// Whether programs place their windows and may show one without giving it the keyboard; where
    /// they do not, both is up to the desktop.
    [[nodiscard]] virtual bool arrangesWindows() const { return true; }

    /// What the desktop gave along with the person's wish for a window, empty when it gave nothing:
    /// the right to the keyboard for the next activate(), or the mark of a start that the desktop
    /// shows as going on until it is told of the end.
    virtual void offerToken(const QByteArray& /*token*/) {}

Q_SIGNALS:
    void compositingChanged(bool isCompositing);
    /// The keyboard has come back to the window before Qt took it for gone. Where the window was
    /// hidden and shown again meanwhile, Qt holds it for inactive from then on, and tells nobody.
    void keyboardCameBack(QWindow* window);
};

} // namespace vellumry
