#include "views/editor/MacTextEditor.h"

#include "palette/SnippetVariableService.h"
#include "views/common/OverlayScrollBar.h"
#include "views/common/Strokes.h"
#include "views/editor/SpacedTextLayout.h"

#include <QPainter>
#include <QScrollBar>
#include <QStringBuilder>
#include <QTextBlock>

#include <algorithm>

namespace vellumry {

namespace {

constexpr QStringView wideBreak = u"\r\n";
constexpr int caretWidth = 2;
constexpr int placeholderRadius = 3;
constexpr int matchRadius = 2;
constexpr qreal markOverhang = 1; ///< above and below the letters
constexpr int tabWidth = 4;       ///< in characters

/// Whether a unit belongs to a script, or to an emoji, in which neighbours are drawn together.
bool isShaped(QChar c)
{
    const char16_t unit = c.unicode();
    return (unit >= 0x300 && unit < 0x370) || (unit >= 0x590 && unit < 0x2000) || unit == 0x200D ||
           c.isSurrogate();
}

/// The parts of a block's lines between two of its characters.
QList<QRectF> partsOfLines(const QTextLayout& layout, int start, int length)
{
    QList<QRectF> parts;
    for (int i = 0; i < layout.lineCount(); ++i) {
        const QTextLine line = layout.lineAt(i);
        const int from = std::max(start, line.textStart());
        const int to = std::min(start + length, line.textStart() + line.textLength());
        if (from >= to)
            continue;
        const qreal a = line.cursorToX(from);
        const qreal b = line.cursorToX(to);
        parts.append({std::min(a, b), line.y(), std::abs(b - a), line.height()});
    }
    return parts;
}

} // namespace

MacTextEditor::MacTextEditor(const Theme& look, Scheduler& scheduler, int margin, QWidget* parent)
    : FocusAwareTextView(parent), theme(look)
{
    auto* text = new QTextDocument(this);
    spacedLayout = new SpacedTextLayout(text);
    text->setDocumentLayout(spacedLayout);
    text->setDocumentMargin(margin);
    setDocument(text);
    setCursorWidth(caretWidth);
    setFrameShape(QFrame::NoFrame);
    setAccessibleName(QStringLiteral("Snippet content"));
    // What holds the view paints the ground.
    viewport()->setAutoFillBackground(false);
    scrollBar = new OverlayScrollBar(*this, {}, scheduler);

    connect(text, &QTextDocument::contentsChange, this, &MacTextEditor::follow);
    connect(spacedLayout, &QAbstractTextDocumentLayout::documentSizeChanged, this,
            &MacTextEditor::heightChanged);
    connect(this, &QPlainTextEdit::cursorPositionChanged, this, [this] {
        if (hasFocus())
            Q_EMIT revealed(cursorRect());
    });
    connect(&theme, &Theme::changed, this, &MacTextEditor::applyTheme);
    applyTheme();
}

void MacTextEditor::applyTheme()
{
    setPalette(theme.palette());
    chooseFont();
    const ColorTokens& token = theme.colors();
    scrollBar->setLook({.handle = token.scrollHandle, .handleHovered = token.scrollHandleHover});
    spacedLayout->setLineHeight(theme.lineHeight(TextStyle::content));
    viewport()->update();
    Q_EMIT heightChanged();
}

/// Arabic letters, marks and joined emoji are drawn together, which the font of the content does
/// with nothing, lest it join "->" as well. In a text that has both, the letters are worth more.
void MacTextEditor::chooseFont()
{
    QFont font = theme.font(TextStyle::content);
    if (needsShaping)
        font.setStyleStrategy(QFont::PreferDefault);
    setFont(font);
    setTabStopDistance(tabWidth * QFontMetricsF(font).horizontalAdvance(u' '));
}

void MacTextEditor::noteScripts(QStringView text)
{
    if (needsShaping || !std::any_of(text.begin(), text.end(), isShaped))
        return;
    needsShaping = true;
    // Not now, in the middle of a change of the document.
    QMetaObject::invokeMethod(this, &MacTextEditor::chooseFont, Qt::QueuedConnection);
}

// The text

void MacTextEditor::setText(const QString& text)
{
    if (hasText && text == source)
        return;
    isSettingText = true;
    noteScripts(text);
    if (!hasText) {
        hasText = true;
        source = text;
        hasWideBreaks = text.contains(wideBreak);
        setPlainText(text);
        // Before the view has its size, the caret has no room and the text was scrolled to make
        // some.
        verticalScrollBar()->setValue(0);
        documentLength = document()->characterCount() - 1;
        matches.search(source, matches.term());
        Q_EMIT textEdited({{}, source, 0, 0, source.size()});
    } else {
        // Whole characters of both are replaced, never one half of a pair.
        const auto [own, other] =
            std::mismatch(source.cbegin(), source.cend(), text.cbegin(), text.cend());
        qsizetype begin = own - source.cbegin();
        while (begin > 0 && (source[begin - 1].isHighSurrogate() || source[begin - 1] == u'\r'))
            --begin;
        const qsizetype common = std::min(source.size(), text.size()) - begin;
        qsizetype tail = 0;
        while (tail < common && source[source.size() - 1 - tail] == text[text.size() - 1 - tail])
            ++tail;
        while (tail > 0 && (source[source.size() - tail].isLowSurrogate() ||
                            source[source.size() - tail] == u'\n'))
            --tail;
        const TextEdit edit{source, text, begin, source.size() - tail - begin,
                            text.size() - tail - begin};
        QTextCursor cursor(document());
        cursor.setPosition(documentPosition(begin));
        cursor.setPosition(documentPosition(source.size() - tail), QTextCursor::KeepAnchor);
        cursor.insertText(text.sliced(begin, edit.inserted));
        source = text;
        hasWideBreaks = text.contains(wideBreak);
        documentLength = document()->characterCount() - 1;
        matches.follow(edit);
        Q_EMIT textEdited(edit);
    }
    isSettingText = false;
    viewport()->update();
    Q_EMIT heightChanged();
}

/// Keeps `source` at the side of the document, which tells where it has changed.
void MacTextEditor::follow(int position, int removed, int added)
{
    if (isSettingText)
        return;
    // The document counts the end that every text has, where that was touched.
    const int length = document()->characterCount() - 1;
    removed = std::min(removed, documentLength - position);
    added = std::min(added, length - position);
    if (documentLength - removed + added != length) {
        position = 0;
        removed = documentLength;
        added = length;
    }
    const qsizetype begin = sourceOffset(position);
    const qsizetype end = sourceOffset(removed, begin);
    QTextCursor cursor(document());
    cursor.setPosition(position);
    cursor.setPosition(position + added, QTextCursor::KeepAnchor);
    const QString inserted = cursor.selectedText().replace(QChar::ParagraphSeparator, QChar(u'\n'));
    documentLength = length;
    // Also what is being composed by an input method, and what was only laid out anew, is told.
    if (QStringView(source).sliced(begin, end - begin) == inserted)
        return;
    const QStringView whole(source);
    const TextEdit edit{source, QString(whole.first(begin) % inserted % whole.sliced(end)), begin,
                        end - begin, inserted.size()};
    source = edit.after;
    noteScripts(inserted);
    matches.follow(edit);
    viewport()->update();
    Q_EMIT textEdited(edit);
    Q_EMIT typed();
    Q_EMIT heightChanged();
}

/// Where a place of the document is in the text; the place is counted from one in the text.
qsizetype MacTextEditor::sourceOffset(int position, qsizetype from) const
{
    qsizetype offset = from + position;
    if (!hasWideBreaks)
        return offset;
    for (qsizetype at = source.indexOf(wideBreak, from); at >= 0 && at < offset;
         at = source.indexOf(wideBreak, at + wideBreak.size()))
        ++offset;
    return offset;
}

int MacTextEditor::documentPosition(qsizetype offset) const
{
    if (!hasWideBreaks)
        return int(offset);
    return int(offset - QStringView(source).first(offset).count(wideBreak));
}

void MacTextEditor::setFilledVariables(const QSet<QString>& names)
{
    if (filled == names)
        return;
    filled = names;
    viewport()->update();
}

// The search

void MacTextEditor::setSearchTerm(const QString& term)
{
    if (term == matches.term())
        return;
    matches.search(source, term);
    viewport()->update();
}

void MacTextEditor::setCurrentMatchIndex(qsizetype index)
{
    currentMatch = index;
    viewport()->update();
}

void MacTextEditor::updateSearchHighlighting()
{
    const bool isAnother = matches.term() != lastSearchTerm || currentMatch != lastMatchIndex;
    if (isAnother && currentMatch < matches.count())
        reveal(documentPosition(matches.positions()[size_t(currentMatch)]),
               int(matches.term().size()));
    lastSearchTerm = matches.term();
    lastMatchIndex = currentMatch;
}

/// Scrolls without a move of the caret.
void MacTextEditor::reveal(int position, int length)
{
    const QTextBlock block = document()->findBlock(position);
    (void)spacedLayout->blockBoundingRect(block);
    const int line = block.firstLineNumber() +
                     block.layout()->lineForTextPosition(position - block.position()).lineNumber();
    const int shown = viewport()->height() / spacedLayout->lineHeight();
    QScrollBar& bar = *verticalScrollBar();
    if (line < bar.value() || line >= bar.value() + shown - 1)
        bar.setValue(line - shown / 3);
    QTextCursor cursor(document());
    cursor.setPosition(position);
    const QRect begin = cursorRect(cursor);
    cursor.setPosition(position + length);
    Q_EMIT revealed(begin.united(cursorRect(cursor)));
}

// Painting

QList<MacTextEditor::Mark> MacTextEditor::marks(const QTextBlock& block, qsizetype begin) const
{
    QList<Mark> marked;
    const QString text = block.text();
    for (const auto& each : SnippetVariableService::shared().placeholders(text)) {
        const bool isFilled = filled.contains(each.name.toString());
        marked.append({int(each.begin), int(each.length),
                       isFilled ? Mark::Kind::filledPlaceholder : Mark::Kind::emptyPlaceholder});
    }
    const auto& positions = matches.positions();
    for (auto at = std::lower_bound(positions.begin(), positions.end(), begin);
         at != positions.end() && *at < begin + text.size(); ++at)
        marked.append({int(*at - begin), int(matches.term().size()),
                       at - positions.begin() == currentMatch ? Mark::Kind::currentMatch
                                                              : Mark::Kind::match});
    return marked;
}

/// The colours of the marked letters. No two ranges overlap: those of matches come before those of
/// placeholders.
QList<QTextLayout::FormatRange> MacTextEditor::letterColors(const QList<Mark>& marked) const
{
    const ColorTokens& token = theme.colors();
    QList<QTextLayout::FormatRange> ranges;
    const auto add = [&ranges](int start, int end, const QColor& color) {
        if (start >= end)
            return;
        QTextCharFormat format;
        format.setForeground(color);
        ranges.append({start, end - start, format});
    };
    for (const Mark& mark : marked) {
        if (mark.isMatch()) {
            add(mark.start, mark.start + mark.length, token.matchText);
            continue;
        }
        int start = mark.start;
        const int end = mark.start + mark.length;
        for (const Mark& match : marked) {
            if (!match.isMatch() || match.start >= end || match.start + match.length <= start)
                continue;
            add(start, match.start, token.accent);
            start = match.start + match.length;
        }
        add(start, end, token.accent);
    }
    return ranges;
}

void MacTextEditor::paintMarks(QPainter& painter, const QTextBlock& block, const QPointF& origin,
                               const QList<Mark>& marked) const
{
    const ColorTokens& token = theme.colors();
    for (const Mark& mark : marked) {
        for (const QRectF& part : partsOfLines(*block.layout(), mark.start, mark.length)) {
            const QRectF place =
                part.translated(origin).adjusted(0, -markOverhang, 0, markOverhang);
            switch (mark.kind) {
            case Mark::Kind::filledPlaceholder:
                fillRounded(painter, place, placeholderRadius, token.accentTint);
                break;
            case Mark::Kind::emptyPlaceholder: {
                const qreal width = vellumry::lineWidth(painter);
                const qreal y = place.bottom() - width / 2;
                QPen pen(token.accent, width);
                pen.setDashPattern({3, 2});
                painter.setPen(pen);
                painter.drawLine(QPointF(place.left(), y), QPointF(place.right(), y));
                break;
            }
            case Mark::Kind::match:
                fillRounded(painter, place, matchRadius, token.matchOther);
                break;
            case Mark::Kind::currentMatch:
                fillRounded(painter, place, matchRadius, token.matchCurrent);
                break;
            }
        }
    }
}

QColor MacTextEditor::matchColorAt(int position) const
{
    const QTextBlock block = document()->findBlock(position);
    const int inBlock = position - block.position();
    QColor color;
    for (const Mark& mark : marks(block, sourceOffset(block.position()))) {
        if (inBlock < mark.start || inBlock >= mark.start + mark.length)
            continue;
        if (mark.kind == Mark::Kind::match)
            color = theme.colors().matchOther;
        else if (mark.kind == Mark::Kind::currentMatch)
            color = theme.colors().matchCurrent;
    }
    return color;
}

void MacTextEditor::paintEvent(QPaintEvent* event)
{
    const ColorTokens& token = theme.colors();
    const auto context = getPaintContext();
    const bool canEdit = !isReadOnly();
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipRect(event->rect());
    QPointF origin = contentOffset();
    qsizetype begin = sourceOffset(firstVisibleBlock().position());
    for (QTextBlock block = firstVisibleBlock(); block.isValid(); block = block.next()) {
        const QRectF rect = blockBoundingRect(block).translated(origin);
        if (rect.top() > event->rect().bottom())
            break;
        const int length = block.length(); // with its break
        if (rect.bottom() >= event->rect().top()) {
            const QList<Mark> marked = marks(block, begin);
            paintMarks(painter, block, origin, marked);

            QList<QTextLayout::FormatRange> ranges = letterColors(marked);
            for (const auto& selection : context.selections) {
                const int from = selection.cursor.selectionStart() - block.position();
                const int to = selection.cursor.selectionEnd() - block.position();
                if (from < length && to > 0 && from < to)
                    ranges.append({std::max(from, 0), std::min(to, length) - std::max(from, 0),
                                   selection.format});
            }
            painter.setPen(token.textPrimary);
            block.layout()->draw(&painter, origin, ranges, event->rect());

            int caret = context.cursorPosition;
            const bool isComposing = caret < -1;
            if (isComposing && block.contains(textCursor().position()))
                caret = block.layout()->preeditAreaPosition() - (caret + 2);
            else
                caret -= block.position();
            if (canEdit && caret >= 0 &&
                (isComposing ? block.contains(textCursor().position()) : caret < length)) {
                painter.setPen(token.accent);
                block.layout()->drawCursor(&painter, origin, caret, caretWidth);
            }
        }
        origin.ry() += rect.height();
        begin += length;
        if (hasWideBreaks &&
            QStringView(source).sliced(std::min(begin - 1, source.size())).startsWith(wideBreak))
            ++begin;
    }
}

void MacTextEditor::resizeEvent(QResizeEvent* event)
{
    FocusAwareTextView::resizeEvent(event);
    if (event->size().width() != event->oldSize().width())
        Q_EMIT heightChanged();
}

int MacTextEditor::heightForText(int most) const
{
    // Two more, for the text that just fits counts as one that has to be scrolled.
    qreal height = document()->documentMargin() + 2;
    for (QTextBlock block = document()->firstBlock(); block.isValid() && height < most;
         block = block.next())
        height += spacedLayout->blockBoundingRect(block).height();
    return std::min(qCeil(height), most);
}

} // namespace vellumry
