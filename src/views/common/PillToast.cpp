#include "views/common/PillToast.h"

#include "views/common/AccessibleRole.h"
#include "views/common/Icon.h"
#include "views/common/Motion.h"
#include "views/common/Shadow.h"
#include "views/common/Strokes.h"
#include "views/common/TextPainting.h"

#include <QEvent>
#include <QPainter>
#include <QtMath>

namespace vellumry {

namespace {

constexpr int pillHeight = 36;
constexpr int radius = pillHeight / 2;
constexpr int bottom = 24;
constexpr int symbolSize = 16;
constexpr int leftPadding = 12;
constexpr int gap = 8;
constexpr int rightPadding = 16;
constexpr int shadowRoom = 20; ///< on all sides
constexpr std::chrono::milliseconds fadeTime{200};
constexpr QColor good(0x64, 0xCE, 0x93);
constexpr QColor bad(0xFF, 0x8A, 0x85);

} // namespace

PillToast::PillToast(const Theme& look, Scheduler& scheduler, QWidget* parent)
    : QWidget(parent), theme(look), end(scheduler, holdTime, this, [this] { dismiss(); }),
      opacity(new QVariantAnimation(this))
{
    setAccessibleRole(*this, QAccessible::Notification);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    parent->installEventFilter(this);
    opacity->setStartValue(0.0);
    opacity->setEndValue(1.0);
    opacity->setEasingCurve(QEasingCurve::InOutQuad);
    connect(opacity, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
    connect(opacity, &QVariantAnimation::finished, this, [this] { setVisible(presented); });
    connect(&theme, &Theme::changed, this, &PillToast::place);
    hide();
}

void PillToast::present(const QString& symbol, const QString& text)
{
    symbolName = symbol;
    line = text;
    setAccessibleName(text);
    place();
    show();
    raise();
    update();
    if (!presented)
        fade(true);
    end.trigger();
    announce(*this);
}

void PillToast::dismiss()
{
    if (presented)
        fade(false);
}

void PillToast::fade(bool in)
{
    presented = in;
    opacity->setDirection(in ? QVariantAnimation::Forward : QVariantAnimation::Backward);
    opacity->setDuration(int(animationTime(*this, fadeTime).count()));
    opacity->start();
}

void PillToast::place()
{
    const qreal text =
        QFontMetricsF(theme.font(TextStyle::bodyMedium)).horizontalAdvance(singleLine(line));
    const int room = parentWidget()->width() - 2 * shadowRoom;
    const int wide =
        std::min(room, leftPadding + symbolSize + gap + qCeil(text) + 1 + rightPadding);
    resize(wide + 2 * shadowRoom, pillHeight + 2 * shadowRoom);
    move((parentWidget()->width() - width()) / 2,
         parentWidget()->height() - bottom - pillHeight - shadowRoom);
    update();
}

bool PillToast::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize && watched == parentWidget())
        place();
    return false;
}

void PillToast::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const ColorTokens& token = theme.colors();
    painter.setOpacity(opacity->currentValue().toReal());
    const QRectF pill = QRectF(rect()).adjusted(shadowRoom, shadowRoom, -shadowRoom, -shadowRoom);
    Shadow::pill.paint(painter, pill, radius, token.shadow);
    fillRounded(painter, pill, radius, token.tooltip);
    Icon(symbolName)
        .paint(painter, {pill.x() + leftPadding, pill.center().y() - symbolSize / 2.0}, symbolSize,
               symbolName == u"checkmark" ? good : bad);
    paintLine(painter, pill.adjusted(leftPadding + symbolSize + gap, 0, -rightPadding, 0), line,
              theme.font(TextStyle::bodyMedium), token.tooltipText);
}

} // namespace vellumry
