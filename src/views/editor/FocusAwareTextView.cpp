#include "views/editor/FocusAwareTextView.h"

#include <QKeyEvent>
#include <QStringBuilder>
#include <QTextBlock>

#include <algorithm>
#include <utility>

namespace vellumry {

namespace {

QString withoutIndentation(const QString& line)
{
    if (line.startsWith(u'\t'))
        return line.sliced(1);
    qsizetype blanks = 0;
    while (blanks < std::min(line.size(), FocusAwareTextView::indentString.size()) &&
           line[blanks] == u' ')
        ++blanks;
    return line.sliced(blanks);
}

} // namespace

FocusAwareTextView::FocusAwareTextView(QWidget* parent) : QPlainTextEdit(parent)
{
    setTabChangesFocus(false);
}

bool FocusAwareTextView::selectsSeveralLines() const
{
    const QTextCursor cursor = textCursor();
    return document()->findBlock(cursor.selectionStart()) !=
           document()->findBlock(cursor.selectionEnd());
}

/// Changes the lines of the selection as one edit and selects them. A line in which the selection
/// ends before its first character is none of them.
void FocusAwareTextView::changeSelectedLines(
    const std::function<QString(const QString& line)>& change)
{
    QTextCursor cursor = textCursor();
    const QTextBlock first = document()->findBlock(cursor.selectionStart());
    QTextBlock end = document()->findBlock(cursor.selectionEnd());
    if (cursor.selectionEnd() > end.position())
        end = end.next();
    QString changed;
    for (QTextBlock block = first; block != end; block = block.next()) {
        changed += change(block.text());
        if (block.next().isValid())
            changed += u'\n';
    }
    const int begin = first.position();
    cursor.setPosition(begin);
    if (end.isValid())
        cursor.setPosition(end.position(), QTextCursor::KeepAnchor);
    else
        cursor.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
    cursor.insertText(changed);
    const int stop = cursor.position();
    cursor.setPosition(begin);
    cursor.setPosition(stop, QTextCursor::KeepAnchor);
    setTextCursor(cursor);
}

void FocusAwareTextView::insertTab()
{
    if (selectsSeveralLines())
        changeSelectedLines([](const QString& line) { return QString(indentString % line); });
    else
        textCursor().insertText(indentString.toString());
    ensureCursorVisible();
}

void FocusAwareTextView::insertBacktab()
{
    if (selectsSeveralLines()) {
        changeSelectedLines(withoutIndentation);
        return;
    }
    clearFocus();
    if (callbacks.onShiftTab)
        callbacks.onShiftTab();
}

void FocusAwareTextView::keyPressEvent(QKeyEvent* event)
{
    constexpr Qt::KeyboardModifiers others =
        Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    const Qt::KeyboardModifiers held = event->modifiers() & others;
    const bool isPlain = !held;
    const bool isTab = event->key() == Qt::Key_Tab;
    if (event->key() == Qt::Key_Escape) {
        clearFocus();
        if (callbacks.onEscape)
            callbacks.onEscape();
    } else if (event->key() == Qt::Key_Backtab && isPlain) {
        insertBacktab();
    } else if (isTab && isPlain) {
        insertTab();
    } else if ((isTab || event->key() == Qt::Key_Backtab) && held == Qt::ControlModifier) {
        // NOLINTNEXTLINE(bugprone-parent-virtual-call): a text in which Tab indents has no next
        QWidget::focusNextPrevChild(isTab);
    } else {
        QPlainTextEdit::keyPressEvent(event);
    }
}

void FocusAwareTextView::focusInEvent(QFocusEvent* event)
{
    QPlainTextEdit::focusInEvent(event);
    if (callbacks.onFocusChange)
        callbacks.onFocusChange(true);
}

void FocusAwareTextView::focusOutEvent(QFocusEvent* event)
{
    QPlainTextEdit::focusOutEvent(event);
    if (callbacks.onFocusChange)
        callbacks.onFocusChange(false);
}

} // namespace vellumry
