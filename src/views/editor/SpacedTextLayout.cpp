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
    const auto top = [&](int i, const QTextLine& line) {
        return i * spacing + (spacing - line.height()) / 2;
    };
    // A block that was laid out anew has its lines where the fonts put them.
    const int count = layout.lineCount();
    if (count > 0 && !qFuzzyCompare(layout.lineAt(0).y() + 1, top(0, layout.lineAt(0)) + 1)) {
        for (int i = 0; i < count; ++i) {
            QTextLine line = layout.lineAt(i);
            line.setPosition({line.x(), top(i, line)});
        }
    }
    rect.setHeight(count * spacing + (block.next().isValid() ? 0 : document()->documentMargin()));
    return rect;
}

} // namespace vellumry
