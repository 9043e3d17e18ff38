#include "views/editor/FullScreenEditorView.h"

#include "views/editor/EditorFixture.h"

namespace vellumry::test {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

class FullScreenEditor : public EditorFixture {
protected:
    FullScreenEditorView& openFull(const QString& content = u"some text"_s)
    {
        openOn(content);
        click(&contents().fullScreenButton());
        EXPECT_TRUE(contents().isFullScreenMode());
        QApplication::processEvents();
        return *contents().fullScreenEditor();
    }
};

TEST(FullScreenEditorSize, FollowsTheMainWindow)
{
    using View = FullScreenEditorView;
    EXPECT_EQ(View::windowSize(QSize(1000, 500)), QSize(800, 500));
    EXPECT_EQ(View::windowSize(QSize(2000, 1000)), QSize(1600, 850));
    EXPECT_EQ(View::windowSize(QSize(800, 500)), QSize(700, 500));
    EXPECT_EQ(View::windowSize(std::nullopt), QSize(900, 600));
}

TEST_F(FullScreenEditor, IsALargeSheet)
{
    FullScreenEditorView& view = openFull();
    EXPECT_EQ(sheets().presented(), &view);
    EXPECT_EQ(view.size(), FullScreenEditorView::windowSize(content().size()));
    EXPECT_EQ(view.accessibleName(), u"One");
    EXPECT_EQ(view.textEditor().text(), u"some text");
    EXPECT_EQ(view.doneButton().text(), u"Done");
    EXPECT_EQ(view.doneButton().symbol(), u"arrow.down.right.and.arrow.up.left");
}

TEST_F(FullScreenEditor, TakesTheFocusAfterATenthOfASecond)
{
    FullScreenEditorView& view = openFull();
    focus(view.doneButton());
    pass(99ms);
    EXPECT_FALSE(view.textEditor().hasFocus());
    pass(1ms);
    EXPECT_TRUE(view.textEditor().hasFocus());
}

TEST_F(FullScreenEditor, CountsCharacters)
{
    FullScreenEditorView& view = openFull(u"ab\n👨‍👩‍👧é"_s);
    EXPECT_EQ(view.count(), u"5 characters");
    pass(100ms);
    view.textEditor().moveCursor(QTextCursor::End);
    type(u"x"_s);
    key(Qt::Key_Return);
    EXPECT_EQ(view.count(), u"7 characters");
    view.textEditor().selectAll();
    key(Qt::Key_Delete);
    EXPECT_EQ(view.count(), u"0 characters");
    paste(u"1\r\n2\n"_s);
    EXPECT_EQ(view.count(), u"4 characters");
}

TEST_F(FullScreenEditor, TypingIsADraftAsInThePanel)
{
    FullScreenEditorView& view = openFull();
    pass(100ms);
    view.textEditor().moveCursor(QTextCursor::End);
    type(u" more"_s);
    EXPECT_TRUE(editorModel().isDirty());
    EXPECT_EQ(model.effectiveSnippet(u"id-One"_s)->content(), u"some text more");
    EXPECT_EQ(stored().content(), u"some text");
    EXPECT_EQ(saves(), 0);

    click(&view.doneButton());
    EXPECT_FALSE(contents().isFullScreenMode());
    EXPECT_FALSE(sheets().isPresenting());
    EXPECT_EQ(text().text(), u"some text more");
    EXPECT_EQ(text().toPlainText(), u"some text more");
    EXPECT_TRUE(editorModel().isDirty()) << "closing saves nothing";

    clickCard(u"Two"_s);
    clickCard(u"One"_s);
    EXPECT_EQ(text().text(), u"some text more");
    EXPECT_TRUE(editorModel().isDirty());
}

TEST_F(FullScreenEditor, EscapeClosesTheSearchAndThenTheSheet)
{
    FullScreenEditorView& view = openFull();
    pass(100ms);
    key(Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(view.search().isSearchVisible());
    EXPECT_FALSE(search().isSearchVisible()) << "not the one behind";
    pass(100ms);
    type(u"te"_s);
    EXPECT_EQ(view.search().status(), u"1/1");
    focus(view.textEditor());
    key(Qt::Key_Escape);
    EXPECT_FALSE(view.search().isSearchVisible());
    EXPECT_TRUE(view.textEditor().hasFocus());
    EXPECT_TRUE(contents().isFullScreenMode());
    key(Qt::Key_Escape);
    EXPECT_FALSE(contents().isFullScreenMode());
    EXPECT_FALSE(editorModel().isDirty());
    EXPECT_TRUE(model.selectedSnippetID());
}

TEST_F(FullScreenEditor, EscapeOfTheSearchFieldGoesBackToTheText)
{
    FullScreenEditorView& view = openFull(u"a A a"_s);
    pass(100ms);
    key(Qt::Key_F, Qt::ControlModifier);
    pass(100ms);
    type(u"a"_s);
    EXPECT_EQ(view.search().status(), u"1/3");
    key(Qt::Key_Return);
    key(Qt::Key_Return);
    EXPECT_EQ(view.search().status(), u"3/3");
    key(Qt::Key_Return);
    EXPECT_EQ(view.search().status(), u"1/3");
    click(&view.search().previousButton());
    EXPECT_EQ(view.search().status(), u"3/3");
    focus(view.search().field());
    type(u"b"_s);
    EXPECT_EQ(view.search().status(), u"No matches");
    key(Qt::Key_Escape);
    EXPECT_FALSE(view.search().isSearchVisible());
    EXPECT_TRUE(view.textEditor().hasFocus());
    EXPECT_TRUE(contents().isFullScreenMode());
}

TEST_F(FullScreenEditor, HasNoSaveAndNoFullScreenKey)
{
    openOn(u"text"_s);
    focus(text());
    key(Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_FALSE(contents().isFullScreenMode()) << "the key in the tool tip is bound to nothing";
    click(&contents().fullScreenButton());
    pass(100ms);
    type(u"x"_s);
    key(Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(saves(), 0);
}

TEST_F(FullScreenEditor, TabStaysInTheSheet)
{
    FullScreenEditorView& view = openFull(u""_s);
    pass(100ms);
    key(Qt::Key_Tab);
    EXPECT_EQ(view.textEditor().text(), u"    ");
    key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_TRUE(contents().isFullScreenMode());
    EXPECT_TRUE(view.doneButton().hasFocus());
    key(Qt::Key_Tab);
    EXPECT_TRUE(view.textEditor().hasFocus());
    for (const auto& [which, modifiers] :
         {std::pair(Qt::Key_Tab, Qt::KeyboardModifiers(Qt::ControlModifier)),
          std::pair(Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier)}) {
        focus(view.textEditor());
        key(which, modifiers);
        EXPECT_EQ(content().focusWidget(), &view.doneButton());
    }
    EXPECT_EQ(view.textEditor().text(), u"    ");
    focus(view.textEditor());
    key(Qt::Key_Escape);
    EXPECT_FALSE(contents().isFullScreenMode());
}

TEST_F(FullScreenEditor, GoesWithItsSnippet)
{
    openFull();
    model.setSelectedSnippetID(u"id-Two"_s);
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(sheets().isPresenting());
}

} // namespace
} // namespace vellumry::test
