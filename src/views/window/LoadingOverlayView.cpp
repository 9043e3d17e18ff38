#include "views/window/LoadingOverlayView.h"

#include "views/common/Label.h"
#include "views/common/Motion.h"

#include <QPainter>
#include <QVBoxLayout>
#include <QVariantAnimation>

namespace vellumry {

namespace {

constexpr int side = 32;
constexpr int line = 3;
constexpr int whole = 360;
constexpr int quarter = 90;
constexpr std::chrono::milliseconds turnTime{900};

} // namespace

class LoadingOverlayView::Ring final : public QWidget {
public:
    Ring(const Theme& look, QWidget* parent)
        : QWidget(parent), theme(look), turning(new QVariantAnimation(this))
    {
        setFixedSize(side, side);
        turning->setStartValue(0.0);
        turning->setEndValue(qreal(whole));
        turning->setLoopCount(-1);
        connect(turning, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
        connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
    }

    void turn()
    {
        const auto time = animationTime(*this, turnTime);
        if (time.count() == 0)
            return;
        turning->setDuration(int(time.count()));
        turning->start();
    }

    void rest() { turning->stop(); }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        constexpr qreal inset = line;
        const QRectF ring = QRectF(rect()).adjusted(inset, inset, -inset, -inset);
        painter.setPen(QPen(theme.colors().fillPressed, line));
        painter.drawEllipse(ring);
        // Qt counts sixteenths of a degree, against the clock.
        constexpr int unit = 16;
        QPen pen(theme.colors().accent, line);
        pen.setCapStyle(Qt::RoundCap);
        painter.setPen(pen);
        const qreal turned = turning->currentValue().toReal();
        painter.drawArc(ring, qRound((quarter - turned) * unit), -quarter * unit);
    }

private:
    const Theme& theme;
    QVariantAnimation* turning;
};

LoadingOverlayView::LoadingOverlayView(const Theme& theme, const QString& text, QWidget* parent)
    : QWidget(parent), ring(new Ring(theme, this)),
      label(new Label(theme, TextStyle::bodyMedium, &ColorTokens::textPrimary, text, this))
{
    setAccessibleName(text);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(36, 24, 36, 20);
    column->setSpacing(14);
    column->addWidget(ring, 0, Qt::AlignHCenter);
    column->addWidget(label, 0, Qt::AlignHCenter);
}

QString LoadingOverlayView::text() const
{
    return label->text();
}

void LoadingOverlayView::setText(const QString& text)
{
    label->setText(text);
    setAccessibleName(text);
}

void LoadingOverlayView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    ring->turn();
}

void LoadingOverlayView::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    ring->rest();
}

} // namespace vellumry
