#include "views/common/OverlayScrollBar.h"

#include <QAbstractScrollArea>
#include <QCoreApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>

namespace vellumry {

namespace {

constexpr int leastHandleLength = 24;

} // namespace

OverlayScrollBar::OverlayScrollBar(QAbstractScrollArea& area, Look appearance, Scheduler& scheduler)
    : QWidget(&area), scrollArea(area), look(appearance),
      hideWhenIdle(scheduler, lingerTime, this, [this] {
          if (isInUse())
              return;
          shown = false;
          update();
      })
{
    area.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setMouseTracking(true);
    area.installEventFilter(this);
    area.viewport()->setMouseTracking(true);
    area.viewport()->installEventFilter(this);
    const auto* bar = area.verticalScrollBar();
    connect(bar, &QScrollBar::valueChanged, this, &OverlayScrollBar::showHandle);
    connect(bar, &QScrollBar::rangeChanged, this, [this](int minimum, int maximum) {
        setVisible(maximum > minimum);
        update();
    });
    setVisible(false);
    place();
}

void OverlayScrollBar::setLook(const Look& appearance)
{
    look = appearance;
    place();
    update();
}

QRectF OverlayScrollBar::handleRect() const
{
    const auto* bar = scrollArea.verticalScrollBar();
    const int range = bar->maximum() - bar->minimum();
    if (range <= 0)
        return {};
    const qreal track = height() - 2.0 * look.margin;
    const qreal length = std::clamp(track * bar->pageStep() / (range + bar->pageStep()),
                                    std::min<qreal>(leastHandleLength, track), track);
    const qreal offset = (track - length) * (bar->value() - bar->minimum()) / range;
    const int thickness = isInUse() ? look.thicknessHovered : look.thickness;
    return {width() - look.margin - qreal(thickness), look.margin + offset, qreal(thickness),
            length};
}

bool OverlayScrollBar::eventFilter(QObject* watched, QEvent* event)
{
    // Of the two that are watched, the viewport still sends events while the area is being taken
    // down, so nothing is asked of the area but on these.
    if (event->type() == QEvent::Resize && watched == &scrollArea)
        place();
    else if (event->type() == QEvent::MouseMove)
        showHandle();
    return false;
}

void OverlayScrollBar::place()
{
    const int wide = look.thicknessHovered + 2 * look.margin;
    setGeometry(scrollArea.width() - wide, 0, wide, scrollArea.height());
    raise();
}

void OverlayScrollBar::showHandle()
{
    shown = true;
    update();
    hideWhenIdle.trigger();
}

void OverlayScrollBar::paintEvent(QPaintEvent*)
{
    const QRectF handle = handleRect();
    if (!shown || handle.isEmpty())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(isInUse() ? look.handleHovered : look.handle);
    painter.drawRoundedRect(handle, handle.width() / 2, handle.width() / 2);
}

void OverlayScrollBar::enterEvent(QEnterEvent*)
{
    showHandle();
}

void OverlayScrollBar::leaveEvent(QEvent*)
{
    showHandle();
}

void OverlayScrollBar::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    auto* bar = scrollArea.verticalScrollBar();
    const QRectF handle = handleRect();
    const qreal y = event->position().y();
    if (y >= handle.top() && y < handle.bottom()) {
        drag = Drag{y, bar->value()};
        showHandle();
    } else {
        bar->triggerAction(y < handle.top() ? QAbstractSlider::SliderPageStepSub
                                            : QAbstractSlider::SliderPageStepAdd);
    }
}

void OverlayScrollBar::mouseMoveEvent(QMouseEvent* event)
{
    showHandle();
    if (!drag)
        return;
    auto* bar = scrollArea.verticalScrollBar();
    const qreal way = height() - 2.0 * look.margin - handleRect().height();
    if (way > 0) {
        const qreal moved = (event->position().y() - drag->pointerY) / way;
        bar->setValue(drag->scrollValue + qRound(moved * (bar->maximum() - bar->minimum())));
    }
}

void OverlayScrollBar::mouseReleaseEvent(QMouseEvent*)
{
    drag.reset();
    showHandle();
}

void OverlayScrollBar::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    drag.reset(); // the release will be somebody else's
}

void OverlayScrollBar::wheelEvent(QWheelEvent* event)
{
    QCoreApplication::sendEvent(scrollArea.viewport(), event);
}

} // namespace vellumry
