#include "views/editor/MacTextEditor.h"

#include "support/ManualScheduler.h"
#include "views/editor/SpacedTextLayout.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QInputMethodEvent>
#include <QMimeData>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <gtest/gtest.h>

#include <memory>
#include <random>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;

class MacTextEditorTest : public testing::Test {
protected:
    void SetUp() override
    {
        editor.resize(500, 320);
        editor.setCallbacks({.onFocusChange = [this](bool has) { focusChanges.append(has); },
                             .onEscape = [this] { ++escapes; },
                             .onShiftTab = [this] { ++shiftTabs; }});
        QObject::connect(&editor, &MacTextEditor::typed, &editor, [this] { ++edits; });
    }
    void open(const QString& text)
    {
        editor.setText(text);
        editor.show();
        editor.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&editor));
        editor.setFocus();
        focusChanges.clear();
    }
    void select(int begin, int end)
    {
        QTextCursor cursor(editor.document());
        cursor.setPosition(begin);
        cursor.setPosition(end, QTextCursor::KeepAnchor);
        editor.setTextCursor(cursor);
    }
    void key(Qt::Key which, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(&editor, which, modifiers);
    }
    [[nodiscard]] QString selected() const
    {
        return editor.textCursor().selectedText().replace(QChar(0x2029), QChar(u'\n'));
    }
    QImage picture() { return editor.viewport()->grab().toImage(); }

    ManualScheduler scheduler;
    Theme theme{ColorScheme::light, 1};
    MacTextEditor editor{theme, scheduler, 12};
    QList<bool> focusChanges;
    int escapes = 0;
    int shiftTabs = 0;
    int edits = 0;
};

// Indentation

TEST_F(MacTextEditorTest, TabInsertsFourBlanks)
{
    open(u"ab"_s);
    select(1, 1);
    key(Qt::Key_Tab);
    EXPECT_EQ(editor.text(), u"a    b");
    EXPECT_EQ(editor.textCursor().position(), 5);
    EXPECT_EQ(edits, 1);
    EXPECT_TRUE(editor.hasFocus());
}

TEST_F(MacTextEditorTest, TabReplacesASelectionWithinALine)
{
    open(u"abc"_s);
    select(1, 2);
    key(Qt::Key_Tab);
    EXPECT_EQ(editor.text(), u"a    c");
}

TEST_F(MacTextEditorTest, TabIndentsThreeSelectedLines)
{
    open(u"one\ntwo\nthree\nfour"_s);
    select(1, 10);
    key(Qt::Key_Tab);
    EXPECT_EQ(editor.text(), u"    one\n    two\n    three\nfour");
    EXPECT_EQ(selected(), u"    one\n    two\n    three\n");
    EXPECT_EQ(edits, 1);
    key(Qt::Key_Tab);
    EXPECT_EQ(editor.text(), u"        one\n        two\n        three\nfour")
        << "the line behind the selection is none of it";
    editor.undo();
    editor.undo();
    EXPECT_EQ(editor.text(), u"one\ntwo\nthree\nfour") << "each is one step";
    EXPECT_EQ(edits, 4);
    editor.redo();
    EXPECT_EQ(editor.text(), u"    one\n    two\n    three\nfour");
}

TEST_F(MacTextEditorTest, TabTouchesEmptyLinesButTheLast)
{
    open(u"a\n\nb\n"_s);
    editor.selectAll();
    key(Qt::Key_Tab);
    EXPECT_EQ(editor.text(), u"    a\n    \n    b\n");
}

TEST_F(MacTextEditorTest, ShiftTabOutdentsSelectedLines)
{
    open(u"\tone\n  two\n      three\n \tfour\nfive"_s);
    editor.selectAll();
    key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(editor.text(), u"one\ntwo\n  three\n\tfour\nfive") << "a tab, or up to four blanks";
    EXPECT_EQ(selected(), editor.text());
    editor.undo();
    EXPECT_EQ(editor.text(), u"\tone\n  two\n      three\n \tfour\nfive");
    EXPECT_EQ(shiftTabs, 0);
    EXPECT_TRUE(editor.hasFocus());
}

TEST_F(MacTextEditorTest, ShiftTabLeavesWithoutLines)
{
    open(u"    one"_s);
    select(5, 7);
    key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(editor.text(), u"    one");
    EXPECT_EQ(shiftTabs, 1);
    EXPECT_FALSE(editor.hasFocus());
    EXPECT_EQ(focusChanges, QList<bool>{false});
}

TEST_F(MacTextEditorTest, EscapeLeaves)
{
    open(u"one"_s);
    key(Qt::Key_Escape);
    EXPECT_EQ(escapes, 1);
    EXPECT_FALSE(editor.hasFocus());
    editor.setFocus();
    EXPECT_EQ(focusChanges, (QList<bool>{false, true}));
}

// The text

TEST_F(MacTextEditorTest, TheFirstTextIsNoStep)
{
    open(u"one"_s);
    EXPECT_FALSE(editor.document()->isUndoAvailable());
    EXPECT_EQ(edits, 0);
}

TEST_F(MacTextEditorTest, OnlyTypingChangesLineBreaksAndBlanks)
{
    const QString odd = u"one\r\ntwo\rthree\u2029four\u2028five\u00a0six\r\n"_s;
    open(odd);
    EXPECT_EQ(editor.text(), odd);
    select(5, 5); // in "two"
    QTest::keyClicks(&editor, u"XY"_s);
    QString expected = odd;
    expected.insert(6, u"XY"_s);
    EXPECT_EQ(editor.text(), expected);
    key(Qt::Key_Return);
    expected.insert(8, u'\n');
    EXPECT_EQ(editor.text(), expected);
    select(3, 4); // the first break
    key(Qt::Key_Delete);
    expected.remove(3, 2);
    EXPECT_EQ(editor.text(), expected);
    editor.moveCursor(QTextCursor::End);
    QTest::keyClicks(&editor, u"Z"_s);
    EXPECT_EQ(editor.text(), QString(expected + u'Z'));
}

TEST_F(MacTextEditorTest, StaysAtTheSideOfTheDocument)
{
    // Random edits, undone and redone, against what the document says itself.
    open(u"first\nsecond {{x}}\n🎉 third"_s);
    std::mt19937 random(3);
    for (int i = 0; i < 400; ++i) {
        QTextCursor cursor(editor.document());
        const int length = editor.document()->characterCount() - 1;
        cursor.setPosition(int(random() % unsigned(length + 1)));
        cursor.setPosition(int(random() % unsigned(length + 1)), QTextCursor::KeepAnchor);
        switch (random() % 6) {
        case 0:
            editor.undo();
            break;
        case 1:
            editor.redo();
            break;
        case 2:
            editor.setTextCursor(cursor);
            editor.insertTab();
            break;
        case 3:
            editor.selectAll();
            editor.insertPlainText(u"new\ntext\n"_s);
            break;
        default:
            cursor.insertText(u"a\nbä🎉"_s.left(int(random() % 6)));
        }
        ASSERT_EQ(editor.text(), editor.toPlainText()) << i;
    }
}

TEST_F(MacTextEditorTest, SetTextReplacesWhatDiffers)
{
    open(u"one two three"_s);
    select(13, 13);
    editor.setText(u"one 2 three"_s);
    EXPECT_EQ(editor.toPlainText(), u"one 2 three");
    EXPECT_EQ(editor.textCursor().position(), 11) << "the caret stays where it was in the text";
    EXPECT_EQ(edits, 0) << "nobody typed";
    editor.undo();
    EXPECT_EQ(editor.text(), u"one two three");
    EXPECT_EQ(edits, 1);
}

TEST_F(MacTextEditorTest, SetTextTakesAnyText)
{
    const QStringList texts{
        {},       u"a"_s,       u"a\r\nb"_s, u"a\nb"_s,      u"😀"_s,    u"😁"_s,      u"😀😁"_s,
        u"a\r"_s, u"a\r\r\n"_s, u"aa"_s,     u"b\r\n\r\n"_s, u"\r\n"_s, u"x{{a}}"_s, u"x{{b}}"_s};
    open({});
    for (const QString& from : texts) {
        for (const QString& to : texts) {
            editor.setText(from);
            editor.setText(to);
            ASSERT_EQ(editor.text(), to);
            QString plain = to;
            plain.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n');
            ASSERT_EQ(editor.toPlainText(), plain) << from.toStdString();
        }
    }
}

TEST_F(MacTextEditorTest, WhatIsBeingComposedIsNotTypedYet)
{
    open(u"ab"_s);
    select(1, 1);
    QInputMethodEvent composing(u"に"_s, {});
    QApplication::sendEvent(&editor, &composing);
    EXPECT_EQ(editor.text(), u"ab");
    EXPECT_EQ(edits, 0);
    QInputMethodEvent commit;
    commit.setCommitString(u"日"_s);
    QApplication::sendEvent(&editor, &commit);
    EXPECT_EQ(editor.text(), u"a日b");
    EXPECT_EQ(edits, 1);
}

TEST_F(MacTextEditorTest, PastesPlainText)
{
    open(u"ab"_s);
    auto* data = new QMimeData;
    data->setHtml(u"<b>bold</b>"_s);
    data->setText(u"bold\r\nline"_s);
    QApplication::clipboard()->setMimeData(data);
    select(1, 1);
    key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(editor.text(), u"abold\nlineb");
}

// Marks

TEST_F(MacTextEditorTest, MatchesAreTintedAndTheTextIsNot)
{
    open(u"call CALL Call other"_s);
    editor.setSearchTerm(u"call"_s);
    editor.setCurrentMatchIndex(1);
    EXPECT_EQ(editor.matchCount(), 3);
    const ColorTokens& token = theme.colors();
    EXPECT_EQ(editor.matchColorAt(0), token.matchOther);
    EXPECT_EQ(editor.matchColorAt(8), token.matchCurrent);
    EXPECT_EQ(editor.matchColorAt(13), token.matchOther);
    EXPECT_FALSE(editor.matchColorAt(4).isValid());
    EXPECT_FALSE(editor.matchColorAt(15).isValid());
    EXPECT_EQ(qRound(token.matchCurrent.alphaF() * 100), 60);
    EXPECT_EQ(qRound(token.matchOther.alphaF() * 100), 40);

    EXPECT_EQ(editor.text(), u"call CALL Call other");
    EXPECT_EQ(edits, 0);
    EXPECT_FALSE(editor.document()->isUndoAvailable());
    EXPECT_TRUE(editor.document()->firstBlock().layout()->formats().isEmpty());

    editor.setSearchTerm({});
    EXPECT_EQ(editor.matchCount(), 0);
    EXPECT_FALSE(editor.matchColorAt(0).isValid());
}

TEST_F(MacTextEditorTest, MatchesArePainted)
{
    open(u"xxxxxxxx"_s);
    editor.clearFocus();
    const QImage before = picture();
    editor.setSearchTerm(u"xxxx"_s);
    editor.setCurrentMatchIndex(1);
    const QImage after = picture();
    QTextCursor cursor(editor.document());
    const auto colorAt = [&](const QImage& image, int position) {
        cursor.setPosition(position);
        const QPoint corner = editor.cursorRect(cursor).topLeft() + QPoint(3, 1);
        return image.pixelColor(corner * image.devicePixelRatio());
    };
    EXPECT_EQ(colorAt(before, 1), colorAt(before, 5));
    EXPECT_NE(colorAt(after, 1), colorAt(before, 1));
    EXPECT_NE(colorAt(after, 5), colorAt(after, 1)) << "the current one stands out";
}

TEST_F(MacTextEditorTest, MatchesOfATextWithWideBreaksAreWhereTheyAre)
{
    open(u"a\r\nhit\r\n\r\nb hit"_s);
    editor.setSearchTerm(u"hit"_s);
    EXPECT_EQ(editor.matchCount(), 2);
    EXPECT_TRUE(editor.matchColorAt(2).isValid());
    EXPECT_FALSE(editor.matchColorAt(1).isValid());
    EXPECT_TRUE(editor.matchColorAt(9).isValid());
    select(2, 2);
    QTest::keyClicks(&editor, u"hit "_s);
    EXPECT_EQ(editor.text(), u"a\r\nhit hit\r\n\r\nb hit");
    EXPECT_EQ(editor.matchCount(), 3);
    EXPECT_TRUE(editor.matchColorAt(13).isValid());
    (void)picture();
}

TEST_F(MacTextEditorTest, ACurrentMatchIsScrolledIntoViewOnce)
{
    QString text;
    for (int i = 0; i < 300; ++i)
        text += i == 200 ? u"needle\n"_s : u"line\n"_s;
    open(text);
    editor.setSearchTerm(u"needle"_s);
    QRect revealed;
    QObject::connect(&editor, &MacTextEditor::revealed, &editor,
                     [&](const QRect& rect) { revealed = rect; });
    editor.updateSearchHighlighting();
    EXPECT_GT(editor.verticalScrollBar()->value(), 100);
    EXPECT_TRUE(editor.viewport()->rect().contains(revealed)) << "it is seen";
    EXPECT_EQ(editor.textCursor().position(), 0) << "the caret is not moved";

    editor.verticalScrollBar()->setValue(0);
    editor.updateSearchHighlighting();
    EXPECT_EQ(editor.verticalScrollBar()->value(), 0) << "the same match is not shown again";
    editor.setSearchTerm(u"needl"_s);
    editor.updateSearchHighlighting();
    EXPECT_GT(editor.verticalScrollBar()->value(), 100);
}

TEST_F(MacTextEditorTest, FilledPlaceholdersHaveAGround)
{
    open(u"{{a}} {{b}}"_s);
    editor.clearFocus();
    const QImage none = picture();
    editor.setFilledVariables({u"a"_s});
    const QImage one = picture();
    const auto column = [&](int position) {
        QTextCursor cursor(editor.document());
        cursor.setPosition(position);
        return editor.cursorRect(cursor).x();
    };
    const auto part = [&](const QImage& image, int from, int to) {
        const qreal ratio = image.devicePixelRatio();
        return image.copy(qRound(column(from) * ratio), 0,
                          qRound((column(to) - column(from)) * ratio), image.height());
    };
    EXPECT_NE(part(none, 0, 5), part(one, 0, 5));
    EXPECT_EQ(part(none, 6, 11), part(one, 6, 11));
}

// Layout

TEST_F(MacTextEditorTest, LinesAreOfOneHeight)
{
    open(u"plain\n日本語 🎉\nשלום\nlast"_s);
    const int line = theme.lineHeight(TextStyle::content);
    QTextBlock block = editor.document()->firstBlock();
    const qreal first = editor.cursorRect(QTextCursor(block)).center().y();
    for (int i = 0; block.isValid(); ++i, block = block.next()) {
        const qreal middle = editor.cursorRect(QTextCursor(block)).center().y();
        EXPECT_NEAR(middle, first + i * line, 2) << i;
    }
}

TEST_F(MacTextEditorTest, RightToLeftParagraphsStandAtTheRight)
{
    // Greek is read like Latin; the last paragraph is long enough for several lines.
    open(u"left\n\u05e9\u05dc\u05d5\u05dd\n\u03b1\n"_s +
         u"\u05e9\u05dc\u05d5\u05dd "_s.repeated(60));
    const auto lines = [this](int number) {
        const QTextBlock block = editor.document()->findBlockByNumber(number);
        (void)editor.document()->documentLayout()->blockBoundingRect(block);
        QList<QRectF> rects;
        for (int i = 0; i < block.layout()->lineCount(); ++i) {
            const QTextLine line = block.layout()->lineAt(i);
            rects.append({line.x(), line.y(), line.naturalTextWidth(), line.height()});
        }
        return rects;
    };
    for (const int width : {500, 400}) {
        editor.resize(width, 320);
        const QTextBlock first = editor.document()->firstBlock();
        const qreal left = lines(0)[0].left();
        const qreal right = left + first.layout()->lineAt(0).width();
        EXPECT_EQ(left, 12);
        EXPECT_EQ(lines(2)[0].left(), left);
        EXPECT_NEAR(lines(1)[0].right(), right, 0.5);
        EXPECT_GT(lines(1)[0].left(), left + 100);
        const QList<QRectF> several = lines(3);
        EXPECT_GT(several.size(), 1);
        for (const QRectF& line : several)
            EXPECT_NEAR(line.right(), right, 0.5);
    }

    // Where the letters are seen they are clicked.
    const QTextBlock block = editor.document()->findBlockByNumber(1);
    QTextCursor cursor(block);
    editor.setTextCursor(cursor);
    const QPoint start = editor.cursorRect().center();
    EXPECT_GT(start.x(), editor.viewport()->width() * 3 / 4);
    cursor.movePosition(QTextCursor::EndOfBlock);
    editor.setTextCursor(cursor);
    const QPoint end = editor.cursorRect().center();
    EXPECT_LT(end.x(), start.x());
    QTest::mouseClick(editor.viewport(), Qt::LeftButton, {}, start + QPoint(20, 0));
    EXPECT_EQ(editor.textCursor().position(), block.position());
    QTest::mouseClick(editor.viewport(), Qt::LeftButton, {}, end - QPoint(100, 0));
    EXPECT_EQ(editor.textCursor().position(), block.position() + 4);
}

TEST_F(MacTextEditorTest, ClicksFindTheirLine)
{
    open(u"one\ntwo\nthree"_s);
    const int line = theme.lineHeight(TextStyle::content);
    QTest::mouseClick(editor.viewport(), Qt::LeftButton, {}, {14, 12 + line * 5 / 2});
    EXPECT_EQ(editor.textCursor().blockNumber(), 2);
    QTest::mouseClick(editor.viewport(), Qt::LeftButton, {}, {14, 12 + line * 3 / 2});
    EXPECT_EQ(editor.textCursor().blockNumber(), 1);
}

TEST_F(MacTextEditorTest, TellsTheHeightOfItsText)
{
    open(u"one\ntwo\nthree"_s);
    const int line = theme.lineHeight(TextStyle::content);
    const int wanted = 3 * line + 2 * 12 + 2;
    EXPECT_EQ(editor.heightForText(1000), wanted);
    EXPECT_EQ(editor.heightForText(50), 50);
    editor.resize(500, wanted);
    QApplication::processEvents();
    EXPECT_EQ(editor.verticalScrollBar()->maximum(), 0) << "it all fits";
    editor.moveCursor(QTextCursor::End);
    key(Qt::Key_Return);
    EXPECT_EQ(editor.heightForText(1000), wanted + line);
}

TEST_F(MacTextEditorTest, FollowsTheTheme)
{
    open(u"text"_s);
    const QImage light = picture();
    const int height = editor.heightForText(1000);
    theme.setScheme(ColorScheme::dark);
    EXPECT_NE(picture(), light);
    theme.setTextScale(1.5);
    EXPECT_GT(editor.heightForText(1000), height);
}

TEST_F(MacTextEditorTest, IsATextToScreenReaders)
{
    open(u"text"_s);
    QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(&editor);
    ASSERT_TRUE(interface);
    EXPECT_EQ(interface->role(), QAccessible::EditableText);
    EXPECT_EQ(interface->text(QAccessible::Name), u"Snippet content");
    ASSERT_TRUE(interface->textInterface());
    EXPECT_EQ(interface->textInterface()->text(0, 4), u"text");
}

TEST_F(MacTextEditorTest, LaysOutOnlyWhatIsSeen)
{
    QString text;
    for (int i = 0; i < 20'000; ++i)
        text += u"a line of the text\n"_s;
    open(text);
    (void)picture();
    editor.moveCursor(QTextCursor::Start);
    QTest::keyClicks(&editor, u"typed"_s);
    int laidOut = 0;
    for (QTextBlock block = editor.document()->firstBlock(); block.isValid(); block = block.next())
        laidOut += block.layout()->lineCount() > 0 ? 1 : 0;
    EXPECT_LT(laidOut, 100);
    EXPECT_TRUE(editor.text().startsWith(u"typeda line"_s));
}

} // namespace
} // namespace vellumry::test
