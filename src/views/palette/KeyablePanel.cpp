#include "views/palette/KeyablePanel.h"

#include "platform/PanelActivation.h"
#include "views/common/AccessibleRole.h"
#include "views/common/RoundedMask.h"
#include "views/palette/QuickSearchStyle.h"

#include <QEvent>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QScreen>
#include <QWindow>

namespace vellumry {

KeyablePanel::KeyablePanel(PanelActivation& activation, QWidget* parent)
    : QWidget(parent, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint),
      desktop(activation)
{
    setAccessibleRole(*this, QAccessible::Window);
    setWindowTitle(QStringLiteral("Palette"));
    setAttribute(Qt::WA_TranslucentBackground);
    setFixedSize(QuickSearchStyle::width, QuickSearchStyle::height);
    connect(&desktop, &PanelActivation::compositingChanged, this, &KeyablePanel::updateMask);
    updateMask();
}

void KeyablePanel::setContentView(QWidget* view)
{
    view->setParent(this);
    view->setGeometry(rect());
    view->show();
    setFocusProxy(view);
}

void KeyablePanel::prepare()
{
    winId();
}

void KeyablePanel::center()
{
    const QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    const QRect place = screen->availableGeometry();
    put({place.x() + (place.width() - width()) / 2, place.y() + (place.height() - height()) / 2});
}

void KeyablePanel::put(QPoint newCorner)
{
    corner = newCorner;
    move(corner);
}

void KeyablePanel::orderFront()
{
    winId();
    if (isVisible()) {
        raise();
    } else {
        desktop.prepareToShow(*windowHandle());
        show();
    }
    desktop.activate(*windowHandle());
}

void KeyablePanel::orderOut()
{
    hide();
}

void KeyablePanel::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() != QEvent::ActivationChange || wasKey == isKey())
        return;
    wasKey = isKey();
    if (wasKey)
        Q_EMIT gainedKeyStatus();
    else
        Q_EMIT resignedKeyStatus();
}

void KeyablePanel::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    if (desktop.arrangesWindows())
        dragOffset = event->position().toPoint();
    else
        windowHandle()->startSystemMove();
}

void KeyablePanel::mouseMoveEvent(QMouseEvent* event)
{
    // Not left to a window manager, which would take the keyboard away for the time.
    if (dragOffset && event->buttons().testFlag(Qt::LeftButton))
        put(event->globalPosition().toPoint() - *dragOffset);
}

void KeyablePanel::mouseReleaseEvent(QMouseEvent*)
{
    dragOffset.reset();
}

void KeyablePanel::updateMask()
{
    if (desktop.isCompositing())
        clearMask();
    else
        setMask(roundedMask(size(), QuickSearchStyle::cornerRadius));
}

} // namespace vellumry
