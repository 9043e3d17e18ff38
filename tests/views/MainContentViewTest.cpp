// The main window's contents as a whole: what is shown when, and what the columns say to each
// other.

#include "views/AccessibleEvents.h"
#include "views/MainFixture.h"
#include "views/common/AlertCard.h"
#include "views/common/PillToast.h"
#include "views/window/EmptyStateView.h"

#include <QLabel>
#include <QSplitter>
#include <gmock/gmock.h>

namespace vellumry::test {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

class MainContentViewTest : public MainFixture {
protected:
    QPlainTextEdit* editor() { return content().findChild<QPlainTextEdit*>(); }
    [[nodiscard]] QString openSnippet()
    {
        return content().editorPanel() ? content().editorPanel()->snippetID() : u"none"_s;
    }
    bool isPlaceholderShown()
    {
        for (const QLabel* label : content().findChildren<QLabel*>())
            if (label->text() == u"Select a snippet to edit" && label->isVisible())
                return true;
        return false;
    }
};

// What is shown

TEST_F(MainContentViewTest, AnEmptyLibraryShowsTheWelcome)
{
    open();
    EXPECT_TRUE(content().isWelcoming());
    EXPECT_TRUE(content().welcome().isVisible());
    EXPECT_FALSE(sidebar().isVisible());
    EXPECT_EQ(content().welcome().createButton()->text(), u"Create First Snippet"_s);
    EXPECT_EQ(content().welcome().createButton()->symbol(), u"plus"_s);
    QStringList texts;
    for (const QLabel* label : content().welcome().findChildren<QLabel*>())
        texts.append(label->text());
    EXPECT_EQ(texts,
              QStringList({u"Welcome to Vellumry"_s,
                           u"Create your first snippet to get started.\nUse snippets to quickly "
                           "paste frequently used text."_s,
                           u"New snippet"_s}));
    click(content().welcome().createButton());
    EXPECT_FALSE(content().isWelcoming());
    EXPECT_EQ(model.snippets().size(), 1);
}

TEST_F(MainContentViewTest, CollectionsAloneDoNotReachTheSidebar)
{
    world.load({makeCollection(u"W"_s, u"Work"_s)}, {});
    open();
    EXPECT_TRUE(content().isWelcoming());
    EXPECT_FALSE(sidebar().isVisible());
    world.notifications.focusCategorySidebar();
    key(Qt::Key_Down);
    EXPECT_FALSE(model.selectedCollection().has_value());
}

TEST_F(MainContentViewTest, DeletingTheLastSnippetGoesToTheWelcomeAtOnce)
{
    world.load({makeCollection(u"W"_s, u"Work"_s)}, {card(u"One"_s, {}, u"Work"_s, 0, 1s)});
    open();
    EXPECT_FALSE(content().isWelcoming());
    model.requestDelete(u"id-One"_s);
    key(Qt::Key_Return);
    EXPECT_TRUE(content().isWelcoming());
}

TEST_F(MainContentViewTest, TheColumnsHaveTheirWidths)
{
    loadFour();
    open();
    EXPECT_EQ(sidebar().width(), 240);
    EXPECT_EQ(list().width(), 300);
    content().resize(1600, 900);
    QApplication::processEvents();
    EXPECT_EQ(sidebar().width(), 240);
    EXPECT_EQ(list().width(), 300);
    auto* splitter = content().findChild<QSplitter*>();
    splitter->setSizes({100, 2000});
    EXPECT_EQ(list().width(), 280);
    splitter->setSizes({900, 500});
    EXPECT_EQ(list().width(), 320);
    content().resize(928, 560);
    QApplication::processEvents();
    EXPECT_GE(list().width(), 280);
    EXPECT_LE(list().width(), 320);
}

// The editor's column

TEST_F(MainContentViewTest, WithoutASelectionThePlaceholderShows)
{
    loadFour();
    open();
    EXPECT_EQ(openSnippet(), u"none"_s);
    EXPECT_TRUE(isPlaceholderShown());
    model.setSelectedSnippetID(u"id-One"_s);
    EXPECT_EQ(openSnippet(), u"id-One"_s);
    EXPECT_FALSE(isPlaceholderShown());
}

TEST_F(MainContentViewTest, AnIdThatIsNoLongerStoredShowsThePlaceholder)
{
    loadFour();
    open();
    model.setSelectedSnippetID(u"id-gone"_s);
    EXPECT_EQ(openSnippet(), u"none"_s);
    EXPECT_TRUE(isPlaceholderShown());
    model.setSelectedSnippetID(u"id-One"_s);
    world.storage.stored->data.snippets.removeFirst();
    model.loadSnippets();
    EXPECT_EQ(model.selectedSnippetID(), u"id-One"_s);
    EXPECT_EQ(openSnippet(), u"none"_s);
    EXPECT_TRUE(isPlaceholderShown());
}

TEST_F(MainContentViewTest, AnotherSelectionIsAnotherEditor)
{
    loadFour();
    open();
    model.setSelectedSnippetID(u"id-One"_s);
    EXPECT_EQ(editors, 1);
    const SnippetEditorPanel* first = content().editorPanel();
    editTitle(u"One"_s, u"Uno"_s);
    model.incrementUsage(u"id-One"_s);
    EXPECT_EQ(content().editorPanel(), first) << "an edit is no reason for another one";
    model.setSelectedSnippetID(u"id-Two"_s);
    EXPECT_EQ(editors, 2);
    model.setSelectedSnippetID(u"id-One"_s);
    EXPECT_EQ(editors, 3);
    EXPECT_EQ(lastRequest.snippet.title(), u"Uno"_s) << "with its draft";
    EXPECT_TRUE(lastRequest.isUnsaved);
    EXPECT_EQ(lastRequest.allSnippets, model.snippets());
}

TEST_F(MainContentViewTest, TheEditorsCallbacksReachTheModel)
{
    loadFour();
    open();
    model.setSelectedSnippetID(u"id-One"_s);
    EXPECT_FALSE(lastRequest.isUnsaved);
    Snippet edited = lastRequest.snippet;
    edited.setTitle(u"Uno"_s);
    lastRequest.onDirtyChange(edited);
    EXPECT_TRUE(model.isUnsaved(u"id-One"_s));
    lastRequest.onDiscard();
    EXPECT_FALSE(model.isUnsaved(u"id-One"_s));
    lastRequest.onSave(edited);
    EXPECT_EQ(world.snippet(u"id-One"_s).title(), u"Uno"_s);
    lastRequest.onDuplicate(u"Copy of Uno"_s);
    EXPECT_EQ(model.snippets().constLast().title(), u"Copy of Uno"_s);
    lastRequest.onDelete();
    EXPECT_TRUE(model.showDeleteConfirmation());
    EXPECT_EQ(model.snippetIDToDelete(), u"id-One"_s);
}

TEST_F(MainContentViewTest, OnlyTheFirstPanelOfANewSnippetIsNew)
{
    loadFour();
    open();
    world.notifications.createSnippet();
    const QString id = *model.newlyCreatedSnippetID();
    EXPECT_EQ(openSnippet(), u"none"_s);
    pass(100ms);
    EXPECT_EQ(openSnippet(), id);
    EXPECT_TRUE(lastRequest.isNewSnippet);
    QApplication::processEvents();
    EXPECT_FALSE(model.newlyCreatedSnippetID().has_value()) << "it has appeared";
    model.setSelectedSnippetID(u"id-One"_s);
    model.setSelectedSnippetID(id);
    EXPECT_FALSE(lastRequest.isNewSnippet);
}

// Notifications

TEST_F(MainContentViewTest, CommandsOfTheMenusArrive)
{
    loadFour();
    open();
    int imports = 0;
    int exports = 0;
    QObject::connect(&content(), &MainContentView::importRequested, [&] { ++imports; });
    QObject::connect(&content(), &MainContentView::exportRequested, [&] { ++exports; });
    world.notifications.importSnippets();
    EXPECT_EQ(imports, 1);
    world.notifications.exportSnippets();
    EXPECT_EQ(exports, 1);
    world.notifications.revealDataInFinder();
    EXPECT_EQ(opened, QList<QUrl>{QUrl::fromLocalFile(u"/data/folder"_s)});
    world.notifications.performSave(); // nobody answers
    EXPECT_EQ(model.snippets().size(), 4);
}

// Text inputs

TEST_F(MainContentViewTest, AClickOutsideEndsTheEditingOfAField)
{
    loadFour();
    open();
    model.setSelectedSnippetID(u"id-One"_s);
    world.notifications.focusSnippetSearch();
    click(filterField(), {60, 10}); // within the field
    EXPECT_TRUE(filterField().hasFocus());
    click(list().header(), {60, 10});
    EXPECT_FALSE(filterField().hasFocus());
    editor()->setFocus();
    click(*editor()->viewport(), {20, 20});
    EXPECT_TRUE(editor()->hasFocus());
    click(sidebar(), {120, 400});
    EXPECT_FALSE(editor()->hasFocus());
}

TEST_F(MainContentViewTest, WithoutATextResigningChangesNothing)
{
    loadFour();
    open();
    clickRow(sidebar().collectionRow(u"Work"_s));
    content().resignTextInputs();
    EXPECT_TRUE(sidebar().collectionRow(u"Work"_s)->hasFocus());
}

TEST_F(MainContentViewTest, AnEditorThatGoesHandsTheKeysToNoButton)
{
    loadFour();
    open();
    model.setSelectedSnippetID(u"id-One"_s);
    editor()->setFocus();
    model.setSelectedSnippetID(std::nullopt);
    EXPECT_EQ(content().focusWidget(), &content());
    key(Qt::Key_Return);
    EXPECT_EQ(model.snippets().size(), 4);
}

TEST_F(MainContentViewTest, KeysBehindTheCommandForANewSnippetAreNotForTheOldOne)
{
    loadFour();
    open();
    model.setSelectedSnippetID(u"id-One"_s);
    editor()->setFocus();
    world.notifications.createSnippet();
    EXPECT_FALSE(editor()->hasFocus());
    type(u"early"_s);
    EXPECT_EQ(editor()->toPlainText(), u"content of {{what}} One"_s);
    pass(100ms);
    EXPECT_NE(selected(), u"One"_s);
    key(Qt::Key_Return);
    EXPECT_EQ(model.snippets().size(), 5);
}

TEST_F(MainContentViewTest, TheWelcomesButtonIsNotPressedByAKeyForWhatWasThere)
{
    world.load({makeCollection(u"W"_s, u"Work"_s)}, {card(u"One"_s, {}, u"Work"_s, 0, 1s)});
    open();
    filterField().setFocus();
    world.load({makeCollection(u"W"_s, u"Work"_s)}, {});
    ASSERT_TRUE(content().isWelcoming());
    key(Qt::Key_Return);
    EXPECT_TRUE(content().isWelcoming());
}

TEST_F(MainContentViewTest, AnEditorThatAnnouncesADraftAsItGoesLeavesOneEditor)
{
    struct Composing : QPlainTextEdit {
        std::function<void()> onFocusOut;
        void focusOutEvent(QFocusEvent*) override { onFocusOut(); }
    };
    loadFour();
    makeEditor = [this](const SnippetEditorRequest& request, QWidget* parent) {
        auto* editor = new Composing;
        editor->setParent(parent);
        editor->setObjectName(request.snippet.id());
        editor->onFocusOut = [this] { editTitle(u"One"_s, u"composed %1"_s.arg(editors)); };
        ++editors;
        return editor;
    };
    open();
    const auto shownEditors = [this] {
        QStringList names;
        for (const auto* each : content().findChildren<QPlainTextEdit*>())
            if (each->isVisible())
                names.append(each->objectName());
        return names;
    };
    model.setSelectedSnippetID(u"id-One"_s);
    QApplication::processEvents();
    content().findChild<QPlainTextEdit*>(u"id-One"_s)->setFocus();
    model.setSelectedSnippetID(u"id-Two"_s);
    QApplication::processEvents();
    EXPECT_EQ(shownEditors(), QStringList{u"id-Two"_s});
    EXPECT_EQ(editors, 2);
    EXPECT_EQ(model.effectiveSnippet(u"id-One"_s)->title(), u"composed 1"_s);

    content().findChild<QPlainTextEdit*>(u"id-Two"_s)->setFocus();
    model.setSelectedSnippetID(std::nullopt);
    EXPECT_EQ(shownEditors(), QStringList());
    EXPECT_EQ(model.effectiveSnippet(u"id-One"_s)->title(), u"composed 2"_s);
}

TEST_F(MainContentViewTest, AHiddenSidebarHasTheKeysNoLonger)
{
    loadFour();
    open();
    model.setSelectedSnippetID(u"id-One"_s);
    clickRow(sidebar().collectionRow(u"Work"_s));
    content().toggleSidebar();
    EXPECT_FALSE(sidebar().isVisible());
    EXPECT_FALSE(sidebar().allowKeyboardNav());
    EXPECT_EQ(content().focusWidget(), &content());
    EXPECT_EQ(selected(), u"One"_s);
    content().toggleSidebar();
    EXPECT_TRUE(sidebar().isVisible());
    editor()->setFocus();
    content().toggleSidebar();
    EXPECT_TRUE(editor()->hasFocus());
}

// Delete alert

TEST_F(MainContentViewTest, DeletingASnippetAsks)
{
    loadFour();
    open();
    model.requestDelete(u"id-One"_s);
    auto* alert = qobject_cast<AlertCard*>(sheets().presented());
    ASSERT_NE(alert, nullptr);
    EXPECT_EQ(alert->accessibleName(), u"Delete Snippet"_s);
    EXPECT_EQ(alert->accessibleDescription(), u"Are you sure you want to delete this snippet?"_s);
    click(alert->button(u"Cancel"_s));
    EXPECT_FALSE(sheets().isPresenting());
    EXPECT_FALSE(model.snippetIDToDelete().has_value());
    EXPECT_EQ(model.snippets().size(), 4);

    model.requestDelete(u"id-One"_s);
    key(Qt::Key_Escape);
    EXPECT_FALSE(model.showDeleteConfirmation());
    EXPECT_FALSE(model.snippetIDToDelete().has_value());

    model.requestDelete(u"id-One"_s);
    click(qobject_cast<AlertCard*>(sheets().presented())->button(u"Delete"_s));
    EXPECT_FALSE(sheets().isPresenting());
    EXPECT_EQ(model.snippets().size(), 3);
    EXPECT_FALSE(model.showDeleteConfirmation());
}

// Toast

TEST_F(MainContentViewTest, TheImportResultShowsForAsLongAsItIsSet)
{
    loadFour();
    open();
    EXPECT_FALSE(content().toast().isVisible());
    content().showImportResult(u"checkmark"_s, u"Imported 2 snippets"_s);
    EXPECT_TRUE(content().toast().isVisible());
    EXPECT_EQ(content().toast().text(), u"Imported 2 snippets"_s);
    EXPECT_EQ(content().toast().symbol(), u"checkmark"_s);
    const QRect place = content().toast().geometry();
    EXPECT_NEAR(place.center().x(), content().rect().center().x(), 1);
    content().hideImportResult();
    EXPECT_FALSE(content().toast().isVisible());
}

TEST_F(MainContentViewTest, AToastThatNobodyDismissesGoesByItself)
{
    loadFour();
    open();
    content().toast().present(u"xmark"_s, u"The folder is gone"_s);
    pass(2999ms);
    EXPECT_TRUE(content().toast().isVisible());
    content().toast().present(u"xmark"_s, u"Still gone"_s);
    pass(2999ms);
    EXPECT_TRUE(content().toast().isVisible()) << "its time begins anew";
    pass(1ms);
    EXPECT_FALSE(content().toast().isVisible());
}

TEST_F(MainContentViewTest, AToastIsTold)
{
    loadFour();
    open();
    AccessibleEvents events;
    PillToast& toast = content().toast();
    toast.present(u"checkmark"_s, u"Imported 2 snippets"_s);
    EXPECT_EQ(events.take(&toast, QAccessible::Alert), 1);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&toast)->text(QAccessible::Name),
              u"Imported 2 snippets");
    toast.present(u"checkmark"_s, u"Imported 3 snippets"_s);
    EXPECT_EQ(events.take(&toast, QAccessible::Alert), 1);
    toast.dismiss();
    EXPECT_EQ(events.take(&toast, QAccessible::Alert), 0);
}

// Theme

TEST_F(MainContentViewTest, TheThemeChangesLive)
{
    loadFour();
    open();
    const auto colorAt = [&](QWidget& widget, const QPoint& point) {
        const QImage image = content().grab().toImage();
        const QPointF place = widget.mapTo(&content(), point);
        return image.pixelColor((place * image.devicePixelRatio()).toPoint()).rgb();
    };
    for (const auto scheme : {ColorScheme::dark, ColorScheme::light}) {
        theme.setScheme(scheme);
        const ColorTokens& token = theme.colors();
        EXPECT_EQ(content().palette().color(QPalette::Window), token.window);
        EXPECT_EQ(colorAt(sidebar(), {3, 300}), token.sidebar.rgb());
        EXPECT_EQ(colorAt(list(), {3, 300}), token.list.rgb());
        EXPECT_EQ(colorAt(list(), {20, 3}), token.list.rgb());
        EXPECT_EQ(colorAt(*cards().viewport(), middleOf(u"One"_s) + QPoint(100, 0)),
                  token.card.rgb());
        EXPECT_EQ(colorAt(filterField(), {150, 16}), token.field.rgb());
    }
}

// Life

TEST_F(MainContentViewTest, ClosingAndReopeningShowsTheSameAgain)
{
    loadFour();
    open();
    model.selectCollection(u"Work"_s);
    clickCard(u"Two"_s);
    editTitle(u"Two"_s, u"Deux"_s);
    const SnippetEditorPanel* panel = content().editorPanel();
    content().hide();
    content().show();
    EXPECT_EQ(content().editorPanel(), panel);
    EXPECT_EQ(selected(), u"Two"_s);
    EXPECT_EQ(shownTitles(), QStringList({u"One"_s, u"Deux"_s, u"Three"_s}));
    EXPECT_NE(sidebar().unsavedRow(), nullptr);
}

} // namespace
} // namespace vellumry::test
