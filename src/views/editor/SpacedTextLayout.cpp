#include "views/editor/SpacedTextLayout.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

namespace vellumry {

SpacedTextLayout::SpacedTextLayout(QTextDocument* document) : QPlainTextDocumentLayout(document) {}

void SpacedTextLayout::setLineHeight(int pixels)
{
    if (spacing == pixels)
        return;
    spacing = pixels;
    Q_EMIT documentSizeChanged(documentSize());
    requestUpdate();
}

QRectF SpacedTextLayout::blockBoundingRect(const QTextBlock& block) const
{
    QRectF rect = QPlainTextDocumentLayout::blockBoundingRect(block);
    if (spacing == 0 || rect.isEmpty())
        return rect;
    const QTextLayout& layout = *block.layout();
    const bool isRightToLeft = block.textDirection() == Qt::RightToLeft;
    const auto place = [&](int i, const QTextLine& line) {
        const qreal inset = isRightToLeft ? line.width() - line.naturalTextWidth() : 0;
        return QPointF(document()->documentMargin() + inset,
                       i * spacing + (spacing - line.height()) / 2);
    };
    // A block that was laid out anew has its lines where the fonts put them, at the left.
    const int count = layout.lineCount();
    if (count > 0 && layout.lineAt(0).position() != place(0, layout.lineAt(0))) {
        for (int i = 0; i < count; ++i) {
            QTextLine line = layout.lineAt(i);
            line.setPosition(place(i, line));
        }
    }
    rect.setHeight(count * spacing + (block.next().isValid() ? 0 : document()->documentMargin()));
    return rect;
}

} // namespace vellumry
