#include "views/common/WrappingLabel.h"

#include <QPainter>
#include <QTextLayout>
#include <QtMath>

#include <algorithm>

namespace vellumry {

namespace {

constexpr int plentyOfWidth = 10'000;

/// Breaks the text into lines and gives the size that they take.
QSizeF breakLines(QTextLayout& layout, const QString& text, qreal wide,
                  Qt::Alignment alignment = Qt::AlignLeft)
{
    layout.setText(QString(text).replace(u'\n', QChar::LineSeparator));
    QTextOption option(alignment);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    QSizeF size;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(wide);
        line.setPosition({0, size.height()});
        size.setWidth(std::max(size.width(), line.naturalTextWidth()));
        size.setHeight(size.height() + std::ceil(line.height()));
    }
    layout.endLayout();
    return size;
}

} // namespace

int WrappingLabel::heightForWidth(int wide) const
{
    QTextLayout layout(QString(), font());
    return qCeil(breakLines(layout, text(), wide).height());
}

QSize WrappingLabel::sizeHint() const
{
    QTextLayout layout(QString(), font());
    const QSizeF size = breakLines(layout, text(), plentyOfWidth);
    return {qCeil(size.width()), qCeil(size.height())};
}

QSize WrappingLabel::minimumSizeHint() const
{
    return {1, fontMetrics().height()};
}

void WrappingLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    QTextLayout layout(QString(), font());
    const qreal room = height() - breakLines(layout, text(), width(), alignment()).height();
    layout.draw(&painter, {0, std::max(0.0, room / 2)});
}

} // namespace vellumry
