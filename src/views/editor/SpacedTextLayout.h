#pragma once

#include <QPlainTextDocumentLayout>

namespace vellumry {

/// Lays out a plain text with lines of one height, whatever fonts a line needs; right-to-left
/// paragraphs stand at the right. Each line of a
/// block is laid out when it is first asked for, as in the layout that this builds on.
class SpacedTextLayout final : public QPlainTextDocumentLayout {
    Q_OBJECT

public:
    /// Becomes a child of the document.
    explicit SpacedTextLayout(QTextDocument* document);

    void setLineHeight(int pixels);
    [[nodiscard]] int lineHeight() const { return spacing; }

    [[nodiscard]] QRectF blockBoundingRect(const QTextBlock& block) const override;

private:
    int spacing = 0;
};

} // namespace vellumry
