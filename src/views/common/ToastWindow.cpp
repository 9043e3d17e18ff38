#include "views/common/ToastWindow.h"

#include "platform/PanelActivation.h"
#include "views/common/Fonts.h"
#include "views/common/Motion.h"
#include "views/common/RoundedMask.h"

#include <QPainter>
#include <QPropertyAnimation>

#include <utility>

namespace vellumry {

namespace {

constexpr int cornerRadius = 18;
constexpr QColor ground(0, 0, 0, 179);

} // namespace

ToastWindow::ToastWindow(PanelActivation& activation, QWidget* parent)
    : QWidget(parent, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                          Qt::WindowDoesNotAcceptFocus | Qt::WindowTransparentForInput |
                          Qt::NoDropShadowWindowHint),
      desktop(activation)
{
    setWindowTitle(QStringLiteral("Toast"));
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFocusPolicy(Qt::NoFocus);
    setFixedSize(toastWidth, toastHeight);
    connect(&desktop, &PanelActivation::compositingChanged, this, &ToastWindow::updateMask);
    updateMask();
}

void ToastWindow::showText(const QString& text, const QRect& place)
{
    shownText = text;
    setAccessibleName(text);
    move(place.x() + (place.width() - toastWidth) / 2,
         place.y() + (place.height() - toastHeight) / 2);
    setWindowOpacity(1);
    show();
    raise();
    update();
}

void ToastWindow::fade(std::chrono::milliseconds duration, std::function<void()> whenDone)
{
    auto* animation = new QPropertyAnimation(this, "windowOpacity", this);
    animation->setDuration(static_cast<int>(animationTime(*this, duration).count()));
    animation->setEasingCurve(QEasingCurve::InOutQuad);
    animation->setStartValue(windowOpacity());
    animation->setEndValue(0.0);
    // Queued, so that the callback may delete the window.
    connect(
        animation, &QPropertyAnimation::finished, this,
        [this, done = std::move(whenDone)] {
            hide();
            if (done)
                done();
        },
        Qt::QueuedConnection);
    animation->start(QAbstractAnimation::DeleteWhenStopped);
}

void ToastWindow::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(rect(), cornerRadius, cornerRadius);

    const QFont font = uiFont(15, QFont::Medium);
    QString line = shownText;
    line.replace(u'\n', u' ');
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine,
                     QFontMetrics(font).elidedText(line, Qt::ElideRight, maxLabelWidth));
}

void ToastWindow::updateMask()
{
    if (desktop.isCompositing())
        clearMask();
    else
        setMask(roundedMask(size(), cornerRadius));
}

} // namespace vellumry
