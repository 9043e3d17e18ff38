// The left column, with real keys, clicks and drags.

#include "views/MainFixture.h"
#include "views/common/AlertCard.h"
#include "views/common/LiftedPicture.h"
#include "views/common/PopupMenu.h"
#include "views/common/TextField.h"
#include "views/sidebar/ColorWell.h"
#include "views/sidebar/CustomColorPickerState.h"
#include "views/sidebar/CustomColorPickerView.h"
#include "views/sidebar/RenameCollectionView.h"

#include <QAccessible>
#include <QMenu>
#include <gmock/gmock.h>

namespace vellumry::test {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using HoveredItem = CollectionSidebarView::HoveredItem;

class CollectionSidebarViewTest : public MainFixture {
protected:
    CollectionRowView* row(const QString& name) { return sidebar().collectionRow(name); }
    CollectionRowView* all() { return sidebar().allRow(); }

    /// The texts of a menu's items; "-" stands for a divider.
    static QStringList textsOf(const QMenu& menu)
    {
        QStringList texts;
        for (const QAction* action : menu.actions())
            texts.append(action->isSeparator() ? u"-"_s : action->text());
        return texts;
    }

    /// Chooses an item of a collection's menu or of its submenu.
    void choose(const QString& collection, const QString& item)
    {
        const std::unique_ptr<PopupMenu> menu(row(collection)->makeMenu());
        for (QAction* action : menu->findChildren<QAction*>()) {
            if (action->text() == item) {
                action->trigger();
                return;
            }
        }
        FAIL() << "no such item";
    }

    static void moveWithoutButton(QWidget& widget, const QPoint& screenPosition)
    {
        QMouseEvent move(QEvent::MouseMove, widget.mapFromGlobal(QPointF(screenPosition)),
                         QPointF(screenPosition), Qt::NoButton, Qt::NoButton, {});
        QApplication::sendEvent(&widget, &move);
    }

    /// Types into the new-collection field and presses Return.
    void addCollection(const QString& name)
    {
        click(sidebar().addButton());
        pass(100ms);
        type(name);
        key(Qt::Key_Return);
    }

    /// The names of the rows and buttons, as a screen reader meets them.
    QStringList readingOrder()
    {
        QStringList names;
        readInto(names, *QAccessible::queryAccessibleInterface(&sidebar()));
        return names;
    }
    static void readInto(QStringList& names, QAccessibleInterface& element)
    {
        if (element.state().invisible)
            return;
        if (element.role() == QAccessible::ListItem || element.role() == QAccessible::Button)
            names.append(element.text(QAccessible::Name));
        for (int index = 0; index < element.childCount(); ++index)
            readInto(names, *element.child(index));
    }

    template <typename Sheet>
    Sheet* sheet()
    {
        return qobject_cast<Sheet*>(sheets().presented());
    }
};

// Rows

TEST_F(CollectionSidebarViewTest, ShowsAllSnippetsAndTheCollectionsWithCounts)
{
    loadFour();
    open();
    EXPECT_EQ(all()->contents().icon, u"square.grid.2x2"_s);
    EXPECT_EQ(all()->contents().title, u"All Snippets"_s);
    EXPECT_EQ(all()->contents().count, 4);
    EXPECT_TRUE(all()->contents().isSelected);
    EXPECT_EQ(sidebar().collectionNames(), QStringList({u"Work"_s, u"Home"_s, u"Empty"_s}));
    EXPECT_EQ(row(u"Work"_s)->contents().count, 3);
    EXPECT_EQ(row(u"Empty"_s)->contents().count, 0);
    EXPECT_LT(row(u"Work"_s)->y(), row(u"Home"_s)->y());
    EXPECT_EQ(sidebar().width(), 240);
}

TEST_F(CollectionSidebarViewTest, RowsTakeTheColorsOfTheirCollections)
{
    world.colors.saveColors({{u"Work"_s, u"red"_s}});
    loadFour();
    open();
    EXPECT_EQ(row(u"Work"_s)->contents().collectionColor, world.colors.getColor(u"Work"_s));
    EXPECT_EQ(row(u"Home"_s)->contents().collectionColor, world.colors.getColor(u"none"_s));
}

TEST_F(CollectionSidebarViewTest, TheDraftsRowStandsOnlyWhileThereAreDrafts)
{
    loadFour();
    open();
    EXPECT_EQ(sidebar().unsavedRow(), nullptr);
    editTitle(u"One"_s, u"Uno"_s);
    ASSERT_NE(sidebar().unsavedRow(), nullptr);
    EXPECT_TRUE(sidebar().unsavedRow()->isVisible());
    EXPECT_EQ(sidebar().unsavedRow()->contents().icon, u"pencil.circle.fill"_s);
    EXPECT_EQ(sidebar().unsavedRow()->contents().count, 1);
    EXPECT_GT(sidebar().unsavedRow()->y(), all()->y());
    EXPECT_LT(sidebar().unsavedRow()->y(), row(u"Work"_s)->y());
}

TEST_F(CollectionSidebarViewTest, TheDraftsRowVanishesWithTheLastDraftWhileItsSelectionStays)
{
    loadFour();
    open();
    editTitle(u"One"_s, u"Uno"_s);
    clickRow(sidebar().unsavedRow());
    EXPECT_TRUE(model.isFilteringUnsaved());
    EXPECT_TRUE(sidebar().unsavedRow()->contents().isSelected);
    EXPECT_FALSE(all()->contents().isSelected);
    model.clearUnsavedEdit(u"id-One"_s);
    EXPECT_EQ(sidebar().unsavedRow(), nullptr);
    EXPECT_TRUE(model.isFilteringUnsaved());
    EXPECT_FALSE(all()->contents().isSelected);
    clickRow(row(u"Home"_s));
    EXPECT_FALSE(model.isFilteringUnsaved());
}

TEST_F(CollectionSidebarViewTest, ANameThatOnlyASnippetKnowsGetsARow)
{
    loadFour();
    open();
    Snippet moved = world.snippet(u"id-One"_s);
    moved.setCollection(u"Unheard of"_s);
    model.setUnsavedEdit(moved);
    ASSERT_NE(row(u"Unheard of"_s), nullptr);
    EXPECT_EQ(world.modelNames().constLast(), u"Unheard of"_s);
    EXPECT_EQ(row(u"Work"_s)->contents().count, 2);
}

// Clicks

TEST_F(CollectionSidebarViewTest, AClickSelectsAndTakesTheKeys)
{
    loadFour();
    open();
    int& posted = counted(&N::focusCategorySidebar);
    editTitle(u"One"_s, u"Uno"_s);
    clickRow(row(u"Home"_s));
    EXPECT_EQ(model.selectedCollection(), u"Home"_s);
    EXPECT_TRUE(row(u"Home"_s)->contents().isSelected);
    EXPECT_TRUE(row(u"Home"_s)->contents().isFocused);
    clickRow(sidebar().unsavedRow());
    EXPECT_TRUE(model.isFilteringUnsaved());
    clickRow(all());
    EXPECT_FALSE(model.isFilteringUnsaved());
    EXPECT_FALSE(model.selectedCollection().has_value());
    EXPECT_EQ(posted, 3);
    EXPECT_TRUE(sidebar().allowKeyboardNav());
    EXPECT_FALSE(sidebar().listPrefersFocus());
}

TEST_F(CollectionSidebarViewTest, AClickTakesTheKeysFromTheList)
{
    loadFour();
    open();
    clickCard(u"Two"_s);
    EXPECT_TRUE(list().allowKeyboardNav());
    EXPECT_FALSE(sidebar().allowKeyboardNav());
    clickRow(row(u"Work"_s));
    EXPECT_FALSE(list().allowKeyboardNav());
    EXPECT_TRUE(sidebar().allowKeyboardNav());
}

TEST_F(CollectionSidebarViewTest, ReleasingBesideTheRowSelectsNothing)
{
    loadFour();
    open();
    CollectionRowView* home = row(u"Home"_s);
    QTest::mousePress(home, Qt::LeftButton, {}, home->rect().center());
    QTest::mouseRelease(home, Qt::LeftButton, {}, QPoint(-5, -200));
    EXPECT_FALSE(model.selectedCollection().has_value());
}

TEST_F(CollectionSidebarViewTest, TellsTheRowUnderThePointer)
{
    loadFour();
    open();
    editTitle(u"One"_s, u"Uno"_s);
    hover(*row(u"Home"_s), true);
    EXPECT_EQ(sidebar().hoveredItem(), (HoveredItem{HoveredItem::Kind::collection, u"Home"_s}));
    EXPECT_TRUE(row(u"Home"_s)->isHovered());
    hover(*all(), true);
    hover(*row(u"Home"_s), false); // the one that is left comes late
    EXPECT_EQ(sidebar().hoveredItem(), (HoveredItem{HoveredItem::Kind::all, {}}));
    hover(*sidebar().unsavedRow(), true);
    EXPECT_EQ(sidebar().hoveredItem(), (HoveredItem{HoveredItem::Kind::unsaved, {}}));
    hover(*sidebar().unsavedRow(), false);
    EXPECT_FALSE(sidebar().hoveredItem().has_value());
}

// New collection

TEST_F(CollectionSidebarViewTest, TheAddButtonOpensAFieldThatGetsTheFocusAMomentLater)
{
    loadFour();
    open();
    EXPECT_EQ(sidebar().addButton()->toolTip(), u"New Collection"_s);
    EXPECT_FALSE(sidebar().isAddingNewCollection());
    click(sidebar().addButton());
    EXPECT_TRUE(sidebar().isAddingNewCollection());
    EXPECT_EQ(sidebar().newCollectionField()->placeholderText(), u"Collection name"_s);
    pass(99ms);
    EXPECT_FALSE(sidebar().newCollectionField()->hasFocus());
    pass(1ms);
    EXPECT_TRUE(sidebar().newCollectionField()->hasFocus());
}

TEST_F(CollectionSidebarViewTest, ReturnCreatesAndSelectsTheTrimmedName)
{
    loadFour();
    open();
    addCollection(u"  Travel "_s);
    EXPECT_TRUE(world.modelNames().contains(u"Travel"_s));
    EXPECT_EQ(model.selectedCollection(), u"Travel"_s);
    EXPECT_FALSE(sidebar().isAddingNewCollection());
    EXPECT_NE(row(u"Travel"_s), nullptr);
    click(sidebar().addButton());
    EXPECT_EQ(sidebar().newCollectionField()->text(), QString());
}

TEST_F(CollectionSidebarViewTest, ANameThatDiffersOnlyInCaseClosesTheFieldAndCreatesNothing)
{
    loadFour();
    open();
    addCollection(u"wORK"_s);
    EXPECT_FALSE(sidebar().isAddingNewCollection());
    EXPECT_EQ(world.modelNames().size(), 3);
    EXPECT_FALSE(model.selectedCollection().has_value());
}

TEST_F(CollectionSidebarViewTest, ABlankNameClosesTheFieldAndCreatesNothing)
{
    loadFour();
    open();
    addCollection(u"   "_s);
    EXPECT_FALSE(sidebar().isAddingNewCollection());
    EXPECT_EQ(world.modelNames().size(), 3);
}

TEST_F(CollectionSidebarViewTest, EscapeAndTheClearButtonCloseTheFieldWithoutCreating)
{
    loadFour();
    open();
    click(sidebar().addButton());
    pass(100ms);
    type(u"Travel"_s);
    key(Qt::Key_Escape);
    EXPECT_FALSE(sidebar().isAddingNewCollection());
    click(sidebar().addButton());
    pass(100ms);
    type(u"Travel"_s);
    EXPECT_EQ(sidebar().newCollectionField()->clearButton()->symbol(), u"xmark.circle.fill"_s);
    click(sidebar().newCollectionField()->clearButton());
    EXPECT_FALSE(sidebar().isAddingNewCollection());
    EXPECT_EQ(world.modelNames().size(), 3);
}

// Menu

TEST_F(CollectionSidebarViewTest, AfterTheFieldTheSidebarHasTheKeysThatItHadBefore)
{
    loadFour();
    open();
    clickRow(row(u"Work"_s));
    addCollection(u"Travel"_s);
    EXPECT_TRUE(row(u"Travel"_s)->hasFocus());
    EXPECT_TRUE(sidebar().allowKeyboardNav());
    key(Qt::Key_Up);
    EXPECT_EQ(model.selectedCollection(), u"Empty"_s);

    clickRow(all());
    clickCard(u"Four"_s);
    EXPECT_FALSE(sidebar().allowKeyboardNav());
    click(sidebar().addButton());
    pass(100ms);
    key(Qt::Key_Escape);
    EXPECT_FALSE(sidebar().allowKeyboardNav());
    ASSERT_NE(content().focusWidget(), nullptr);
    EXPECT_EQ(content().focusWidget()->focusPolicy(), Qt::NoFocus) << "no stop of Tab is chosen";
}

TEST_F(CollectionSidebarViewTest, TheMenuHasItsItemsInOrder)
{
    loadFour();
    open();
    EXPECT_EQ(all()->makeMenu(), nullptr);
    const std::unique_ptr<PopupMenu> menu(row(u"Work"_s)->makeMenu());
    EXPECT_EQ(textsOf(*menu),
              QStringList({u"Rename"_s, u"Export"_s, u"Delete"_s, u"-"_s, u"Change Color"_s}));
    const auto* colors = menu->findChild<PopupMenu*>();
    ASSERT_NE(colors, nullptr);
    EXPECT_EQ(textsOf(*colors),
              QStringList({u"Gray"_s, u"Blue"_s, u"Purple"_s, u"Pink"_s, u"Red"_s, u"Orange"_s,
                           u"Yellow"_s, u"Green"_s, u"Mint"_s, u"Teal"_s, u"Cyan"_s, u"Indigo"_s,
                           u"-"_s, u"Custom..."_s}));
}

TEST_F(CollectionSidebarViewTest, ARightClickOpensTheMenu)
{
    loadFour();
    open();
    CollectionRowView* work = row(u"Work"_s);
    QContextMenuEvent event(QContextMenuEvent::Mouse, {5, 5}, work->mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(work, &event);
    auto* menu = qobject_cast<PopupMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    menu->close();
}

TEST_F(CollectionSidebarViewTest, ASwatchIsTwelvePointsWideAndRound)
{
    const QImage picture = PopupMenu::swatch(Qt::red, 2).toImage();
    EXPECT_EQ(picture.size(), QSize(24, 24));
    EXPECT_EQ(picture.pixelColor(12, 12), QColor(Qt::red));
    EXPECT_EQ(picture.pixelColor(0, 0).alpha(), 0);
}

TEST_F(CollectionSidebarViewTest, APresetIsStoredAndShownAtOnce)
{
    loadFour();
    open();
    choose(u"Work"_s, u"Teal"_s);
    EXPECT_EQ(world.colors.loadColors().value(u"Work"_s), u"teal"_s);
    EXPECT_EQ(row(u"Work"_s)->contents().collectionColor, world.colors.getColor(u"Work"_s));
    EXPECT_NE(row(u"Work"_s)->contents().collectionColor,
              row(u"Home"_s)->contents().collectionColor);
}

TEST_F(CollectionSidebarViewTest, ExportComesAMomentAfterTheMenu)
{
    loadFour();
    open();
    QStringList asked;
    QObject::connect(&content(), &MainContentView::exportCollectionRequested, &content(),
                     [&](const QString& name) { asked.append(name); });
    choose(u"Home"_s, u"Export"_s);
    pass(99ms);
    EXPECT_TRUE(asked.isEmpty());
    pass(1ms);
    EXPECT_EQ(asked, QStringList(u"Home"_s));
}

// Rename

TEST_F(CollectionSidebarViewTest, RenameAsksAMomentAfterTheMenu)
{
    loadFour();
    open();
    choose(u"Work"_s, u"Rename"_s);
    pass(99ms);
    EXPECT_FALSE(sheets().isPresenting());
    pass(1ms);
    auto* view = sheet<RenameCollectionView>();
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(sidebar().collectionToRename(), u"Work"_s);
    EXPECT_EQ(view->field()->text(), u"Work"_s);
    EXPECT_TRUE(view->field()->hasFocus());
    EXPECT_FALSE(view->renameButton()->isEnabled());
    type(u"Labour"_s);
    EXPECT_TRUE(view->renameButton()->isEnabled());
    key(Qt::Key_Return);
    EXPECT_FALSE(sheets().isPresenting());
    EXPECT_EQ(world.modelNames(), QStringList({u"Labour"_s, u"Home"_s, u"Empty"_s}));
    EXPECT_FALSE(sidebar().collectionToRename().has_value());
    EXPECT_NE(row(u"Labour"_s), nullptr);
    EXPECT_EQ(row(u"Work"_s), nullptr);
}

TEST_F(CollectionSidebarViewTest, BlanksAloneMakeNoNewName)
{
    loadFour();
    open();
    choose(u"Work"_s, u"Rename"_s);
    pass(100ms);
    auto* view = sheet<RenameCollectionView>();
    ASSERT_NE(view, nullptr);
    for (const QString& name : {u"Work  "_s, u"\tWork"_s, u""_s, u"   "_s}) {
        view->field()->setText(name);
        EXPECT_FALSE(view->isValidName()) << name.toStdString();
        key(Qt::Key_Return);
        EXPECT_TRUE(sheets().isPresenting());
    }
    key(Qt::Key_Escape);
    EXPECT_FALSE(sheets().isPresenting());
    EXPECT_EQ(world.modelNames().constFirst(), u"Work"_s);
}

TEST_F(CollectionSidebarViewTest, ARenameOntoATakenNameIsNotRefused)
{
    loadFour();
    open();
    choose(u"Work"_s, u"Rename"_s);
    pass(100ms);
    type(u"Home"_s);
    key(Qt::Key_Return);
    EXPECT_EQ(world.modelNames(), QStringList({u"Home"_s, u"Home"_s, u"Empty"_s}));
    EXPECT_EQ(sidebar().collectionNames(), QStringList({u"Home"_s, u"Empty"_s}));
    EXPECT_EQ(row(u"Home"_s)->contents().count, 4);
}

TEST_F(CollectionSidebarViewTest, CancelOfTheRenamingLeavesEverything)
{
    loadFour();
    open();
    choose(u"Work"_s, u"Rename"_s);
    pass(100ms);
    type(u"Other"_s);
    click(sheet<RenameCollectionView>()->cancelButton());
    EXPECT_FALSE(sheets().isPresenting());
    EXPECT_EQ(world.modelNames().constFirst(), u"Work"_s);
}

// Delete

TEST_F(CollectionSidebarViewTest, DeletingACollectionAsksFirst)
{
    loadFour();
    open();
    choose(u"Work"_s, u"Delete"_s);
    EXPECT_EQ(sidebar().collectionToDelete(), u"Work"_s);
    pass(199ms);
    EXPECT_FALSE(sheets().isPresenting());
    pass(1ms);
    auto* alert = sheet<AlertCard>();
    ASSERT_NE(alert, nullptr);
    EXPECT_EQ(alert->accessibleName(), u"Delete Collection"_s);
    EXPECT_EQ(alert->accessibleDescription(),
              u"Are you sure you want to delete \"Work\" and all its snippets? This action cannot "
              "be undone."_s);
    EXPECT_TRUE(alert->button(u"Cancel"_s)->hasFocus());
    click(alert->button(u"Delete"_s));
    EXPECT_FALSE(sheets().isPresenting());
    EXPECT_EQ(world.modelNames(), QStringList({u"Home"_s, u"Empty"_s}));
    EXPECT_EQ(model.snippets().size(), 1);
    EXPECT_FALSE(sidebar().collectionToDelete().has_value());
    EXPECT_EQ(row(u"Work"_s), nullptr);
}

TEST_F(CollectionSidebarViewTest, TwoQuestionsAtOnceCanBothBeClosed)
{
    loadFour();
    open();
    choose(u"Work"_s, u"Delete"_s);
    pass(150ms);
    choose(u"Home"_s, u"Rename"_s);
    pass(100ms);
    key(Qt::Key_Escape);
    EXPECT_TRUE(sheets().isPresenting());
    key(Qt::Key_Escape);
    EXPECT_FALSE(sheets().isPresenting());
    EXPECT_FALSE(sidebar().collectionToRename().has_value());
    EXPECT_FALSE(sidebar().collectionToDelete().has_value());
}

TEST_F(CollectionSidebarViewTest, CancelOfTheDeletionLeavesEverything)
{
    loadFour();
    open();
    for (const bool byKey : {true, false}) {
        choose(u"Work"_s, u"Delete"_s);
        pass(200ms);
        ASSERT_TRUE(sheets().isPresenting());
        if (byKey)
            key(Qt::Key_Return); // on Cancel, which has the focus
        else
            key(Qt::Key_Escape);
        EXPECT_FALSE(sheets().isPresenting());
        EXPECT_FALSE(sidebar().collectionToDelete().has_value());
        EXPECT_EQ(world.modelNames().size(), 3);
        EXPECT_EQ(model.snippets().size(), 4);
    }
}

TEST_F(CollectionSidebarViewTest, ANameWithAPlaceholderStandsInTheQuestionAsItIs)
{
    world.load({makeCollection(u"P"_s, u"%1 \"x\""_s)}, {card(u"One"_s, {}, u"%1 \"x\""_s, 0, 1s)});
    open();
    choose(u"%1 \"x\""_s, u"Delete"_s);
    pass(200ms);
    EXPECT_TRUE(sheet<AlertCard>()->accessibleDescription().contains(u"\"%1 \"x\"\" and all"_s));
}

// Custom colour

TEST_F(CollectionSidebarViewTest, ACustomColorIsStoredInHexadecimal)
{
    loadFour();
    open();
    choose(u"Work"_s, u"Custom..."_s);
    pass(199ms);
    EXPECT_FALSE(sidebar().colorPickerState().isPresented);
    pass(1ms);
    auto* view = sheet<CustomColorPickerView>();
    ASSERT_NE(view, nullptr);
    EXPECT_TRUE(sidebar().colorPickerState().isPresented);
    EXPECT_EQ(sidebar().colorPickerState().collectionName, u"Work"_s);
    EXPECT_EQ(sidebar().colorPickerState().initialColor, world.colors.getColor(u"Work"_s));
    view->well().setColor(QColor(0x2E, 0x93, 0xA5));
    click(view->confirmButton());
    EXPECT_EQ(world.colors.loadColors().value(u"Work"_s), toHex(view->well().color()));
    EXPECT_FALSE(sidebar().colorPickerState().isPresented);
    EXPECT_FALSE(sheets().isPresenting());
    EXPECT_EQ(row(u"Work"_s)->contents().collectionColor, world.colors.getColor(u"Work"_s));
}

TEST_F(CollectionSidebarViewTest, CancelOfTheColorStoresNothing)
{
    loadFour();
    open();
    choose(u"Work"_s, u"Custom..."_s);
    pass(200ms);
    click(sheet<CustomColorPickerView>()->cancelButton());
    EXPECT_FALSE(sheets().isPresenting());
    EXPECT_FALSE(sidebar().colorPickerState().isPresented);
    EXPECT_TRUE(world.colors.loadColors().isEmpty());
}

// Keys

TEST_F(CollectionSidebarViewTest, DownAndUpMoveThroughAllSnippetsAndTheCollections)
{
    loadFour();
    open();
    clickRow(all());
    key(Qt::Key_Down);
    EXPECT_EQ(model.selectedCollection(), u"Work"_s);
    key(Qt::Key_Down);
    key(Qt::Key_Down);
    EXPECT_EQ(model.selectedCollection(), u"Empty"_s);
    key(Qt::Key_Down); // the last one stays
    EXPECT_EQ(model.selectedCollection(), u"Empty"_s);
    key(Qt::Key_Up);
    key(Qt::Key_Up);
    key(Qt::Key_Up); // from the first to all of them
    EXPECT_FALSE(model.selectedCollection().has_value());
    key(Qt::Key_Up);
    EXPECT_FALSE(model.selectedCollection().has_value());
    EXPECT_TRUE(all()->hasFocus());
}

TEST_F(CollectionSidebarViewTest, TheDraftsRowIsNoPartOfTheSequence)
{
    loadFour();
    open();
    editTitle(u"One"_s, u"Uno"_s);
    clickRow(sidebar().unsavedRow());
    key(Qt::Key_Down); // from where "All Snippets" stands
    EXPECT_EQ(model.selectedCollection(), u"Work"_s);
    EXPECT_FALSE(model.isFilteringUnsaved());
}

TEST_F(CollectionSidebarViewTest, AnUnknownSelectionCountsAsAllSnippets)
{
    loadFour();
    open();
    model.setSelectedCollection(u"gone"_s);
    world.notifications.focusCategorySidebar();
    key(Qt::Key_Down);
    EXPECT_EQ(model.selectedCollection(), u"Work"_s);
}

TEST_F(CollectionSidebarViewTest, TabGoesToTheFilterField)
{
    loadFour();
    open();
    clickRow(row(u"Work"_s));
    key(Qt::Key_Tab);
    EXPECT_TRUE(filterField().hasFocus());
    EXPECT_FALSE(sidebar().allowKeyboardNav());
    EXPECT_TRUE(sidebar().listPrefersFocus());
}

TEST_F(CollectionSidebarViewTest, RightGoesToTheList)
{
    loadFour();
    open();
    clickRow(row(u"Work"_s));
    key(Qt::Key_Right);
    EXPECT_TRUE(list().allowKeyboardNav());
    EXPECT_EQ(selected(), u"One"_s);
    EXPECT_FALSE(sidebar().allowKeyboardNav());
    EXPECT_TRUE(sidebar().listPrefersFocus());
}

TEST_F(CollectionSidebarViewTest, KeysWithModifiersAndOtherKeysPassOn)
{
    loadFour();
    open();
    clickRow(row(u"Work"_s));
    for (const auto modifier :
         {Qt::ShiftModifier, Qt::ControlModifier, Qt::AltModifier, Qt::MetaModifier})
        key(Qt::Key_Down, modifier);
    key(Qt::Key_A);
    key(Qt::Key_Left);
    EXPECT_EQ(model.selectedCollection(), u"Work"_s);
    EXPECT_TRUE(sidebar().allowKeyboardNav());
    key(Qt::Key_Down, Qt::KeypadModifier); // which is no modifier of the person's
    EXPECT_EQ(model.selectedCollection(), u"Home"_s);
}

TEST_F(CollectionSidebarViewTest, UnderThePointerItTakesKeysUnlessTheListPrefersThem)
{
    loadFour();
    open();
    key(Qt::Key_Down);
    EXPECT_FALSE(model.selectedCollection().has_value()) << "neither keys nor pointer";
    hover(sidebar(), true);
    EXPECT_TRUE(sidebar().isHovered());
    key(Qt::Key_Down);
    EXPECT_EQ(model.selectedCollection(), u"Work"_s);
    EXPECT_FALSE(sidebar().allowKeyboardNav());
    world.notifications.focusSnippetEditor();
    key(Qt::Key_Down);
    EXPECT_EQ(model.selectedCollection(), u"Work"_s);
    hover(sidebar(), false);
    EXPECT_FALSE(sidebar().isHovered());
}

TEST_F(CollectionSidebarViewTest, NotificationsMoveTheKeys)
{
    loadFour();
    open();
    for (const auto notification :
         {&N::focusSnippetSearch, &N::focusSnippetList, &N::focusSnippetEditor}) {
        world.notifications.focusCategorySidebar();
        EXPECT_TRUE(sidebar().allowKeyboardNav());
        EXPECT_FALSE(sidebar().listPrefersFocus());
        Q_EMIT(world.notifications.*notification)();
        EXPECT_FALSE(sidebar().allowKeyboardNav());
        EXPECT_TRUE(sidebar().listPrefersFocus());
    }
    world.notifications.focusCategorySidebar();
    world.notifications.focusSnippetTitle(); // which the sidebar does not hear
    EXPECT_TRUE(sidebar().allowKeyboardNav());
}

// Drag

TEST_F(CollectionSidebarViewTest, DraggingARowMovesItsCollectionStepByStep)
{
    loadFour();
    open();
    CollectionRowView* work = row(u"Work"_s);
    const auto at = [&](const QString& name) {
        return work->mapFromGlobal(row(name)->mapToGlobal(row(name)->rect().center()));
    };
    const qsizetype saves = world.storage.saves();
    QTest::mousePress(work, Qt::LeftButton, {}, work->rect().center());
    QTest::mouseMove(work, work->rect().center() + QPoint(2, 2));
    EXPECT_FALSE(sidebar().draggingCollection().has_value()) << "that is no drag yet";
    QTest::mouseMove(work, at(u"Home"_s));
    EXPECT_EQ(sidebar().draggingCollection(), u"Work"_s);
    EXPECT_EQ(sidebar().collectionNames(), QStringList({u"Home"_s, u"Work"_s, u"Empty"_s}));
    EXPECT_EQ(world.storage.saves(), saves + 1);
    QTest::mouseMove(work, at(u"Empty"_s));
    EXPECT_EQ(sidebar().collectionNames(), QStringList({u"Home"_s, u"Empty"_s, u"Work"_s}));
    EXPECT_EQ(world.storage.saves(), saves + 2);
    QTest::mouseMove(work, at(u"Home"_s));
    EXPECT_EQ(sidebar().collectionNames(), QStringList({u"Work"_s, u"Home"_s, u"Empty"_s}));
    QTest::mouseRelease(work, Qt::LeftButton, {}, work->rect().center());
    EXPECT_FALSE(sidebar().draggingCollection().has_value());
    EXPECT_FALSE(model.selectedCollection().has_value()) << "a drag is no click";
    EXPECT_LT(row(u"Work"_s)->y(), row(u"Home"_s)->y());
}

TEST_F(CollectionSidebarViewTest, DroppedBesideTheRowsADragEndsToo)
{
    loadFour();
    open();
    CollectionRowView* work = row(u"Work"_s);
    QTest::mousePress(work, Qt::LeftButton, {}, work->rect().center());
    QTest::mouseMove(work, QPoint(500, 300));
    EXPECT_EQ(sidebar().draggingCollection(), u"Work"_s);
    QTest::mouseRelease(work, Qt::LeftButton, {}, QPoint(500, 300));
    EXPECT_FALSE(sidebar().draggingCollection().has_value());
    EXPECT_EQ(sidebar().collectionNames(), QStringList({u"Work"_s, u"Home"_s, u"Empty"_s}));
}

TEST_F(CollectionSidebarViewTest, AllSnippetsCannotBeDragged)
{
    loadFour();
    open();
    QTest::mousePress(all(), Qt::LeftButton, {}, {20, 10});
    QTest::mouseMove(all(), {20, 90});
    QTest::mouseRelease(all(), Qt::LeftButton, {}, {20, 90});
    EXPECT_EQ(sidebar().collectionNames(), QStringList({u"Work"_s, u"Home"_s, u"Empty"_s}));
}

TEST_F(CollectionSidebarViewTest, ACollectionThatGoesWhileItIsDraggedTakesThePictureAlong)
{
    loadFour();
    open();
    CollectionRowView* home = row(u"Home"_s);
    QTest::mousePress(home, Qt::LeftButton, {}, home->rect().center());
    QTest::mouseMove(home, home->rect().center() + QPoint(40, 0));
    ASSERT_EQ(sidebar().draggingCollection(), u"Home"_s);
    model.deleteCollection(u"Home"_s);
    EXPECT_EQ(row(u"Home"_s), nullptr);
    EXPECT_FALSE(sidebar().draggingCollection().has_value());
}

TEST_F(CollectionSidebarViewTest, ADragEndsWhereItIsWhenTheWindowGoes)
{
    loadFour();
    open();
    CollectionRowView* work = row(u"Work"_s);
    const auto picture = [this] {
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return content().findChild<LiftedPicture*>() != nullptr;
    };
    const QPoint start = work->rect().center();
    const QPoint beyond = start + QPoint(40, 0);
    QTest::mousePress(work, Qt::LeftButton, {}, start);
    QTest::mouseMove(work, beyond);
    ASSERT_EQ(sidebar().draggingCollection(), u"Work"_s);
    ASSERT_TRUE(picture());
    content().hide();
    EXPECT_FALSE(sidebar().draggingCollection().has_value());
    EXPECT_FALSE(picture());

    // The release was somebody else's.
    content().show();
    QTest::mouseMove(work, start);
    QTest::mouseMove(work, beyond);
    EXPECT_FALSE(sidebar().draggingCollection().has_value()) << "no button is held";
    EXPECT_FALSE(picture());
    QTest::mouseRelease(work, Qt::LeftButton, {}, start);
    EXPECT_FALSE(model.selectedCollection().has_value());

    QTest::mousePress(work, Qt::LeftButton, {}, start);
    QTest::mouseMove(work, beyond);
    ASSERT_TRUE(picture());
    QTest::mouseRelease(work, Qt::LeftButton, {}, beyond);
    EXPECT_FALSE(picture());
}

TEST_F(CollectionSidebarViewTest, ADragWhoseReleaseWentElsewhereEndsWithTheNextMove)
{
    loadFour();
    open();
    CollectionRowView* work = row(u"Work"_s);
    QTest::mousePress(work, Qt::LeftButton, {}, work->rect().center());
    QTest::mouseMove(work, work->rect().center() + QPoint(40, 0));
    ASSERT_EQ(sidebar().draggingCollection(), u"Work"_s);
    QContextMenuEvent menu(QContextMenuEvent::Mouse, work->rect().center(),
                           work->mapToGlobal(work->rect().center()));
    QApplication::sendEvent(work, &menu);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr) << "a menu would take the release";
    const QPoint home = row(u"Home"_s)->mapToGlobal(row(u"Home"_s)->rect().center());
    moveWithoutButton(*work, home);
    EXPECT_FALSE(sidebar().draggingCollection().has_value());
    EXPECT_EQ(sidebar().collectionNames(), QStringList({u"Work"_s, u"Home"_s, u"Empty"_s}));

    QTest::mousePress(work, Qt::LeftButton, {}, work->rect().center());
    moveWithoutButton(*work, home);
    moveWithoutButton(*work, home + QPoint(1, 1));
    EXPECT_FALSE(sidebar().draggingCollection().has_value()) << "nor does one begin";
    QTest::mouseRelease(work, Qt::LeftButton);
}

TEST_F(CollectionSidebarViewTest, ARowThatMovesUnderAHeldButtonIsClickedAllTheSame)
{
    loadFour();
    open();
    CollectionRowView* home = row(u"Home"_s);
    const QPoint place = home->mapToGlobal(home->rect().center());
    QTest::mousePress(home, Qt::LeftButton, {}, home->rect().center());
    editTitle(u"One"_s, u"Uno"_s); // the drafts get a row above it
    ASSERT_FALSE(home->rect().contains(home->mapFromGlobal(place)));
    QTest::mouseMove(home, home->mapFromGlobal(place + QPoint(1, 0)));
    EXPECT_FALSE(sidebar().draggingCollection().has_value());
    QTest::mouseRelease(home, Qt::LeftButton, {}, home->mapFromGlobal(place + QPoint(1, 0)));
    EXPECT_EQ(model.selectedCollection(), u"Home"_s);
    EXPECT_EQ(sidebar().collectionNames(), QStringList({u"Work"_s, u"Home"_s, u"Empty"_s}));
}

// Focus

TEST_F(CollectionSidebarViewTest, ARenamedCollectionKeepsTheKeys)
{
    loadFour();
    open();
    clickRow(row(u"Work"_s));
    ASSERT_EQ(content().focusWidget(), row(u"Work"_s));
    model.setSelectedSnippetID(u"id-One"_s);
    model.renameCollection(u"Work"_s, u"Labour"_s);
    EXPECT_EQ(content().focusWidget(), row(u"Labour"_s));
    EXPECT_TRUE(sidebar().allowKeyboardNav());
    key(Qt::Key_Down);
    EXPECT_EQ(model.selectedCollection(), u"Home"_s);
}

TEST_F(CollectionSidebarViewTest, ARowThatGoesHandsTheKeysToNoButton)
{
    loadFour();
    open();
    editTitle(u"One"_s, u"Uno"_s);
    clickRow(sidebar().unsavedRow());
    ASSERT_EQ(content().focusWidget(), sidebar().unsavedRow());
    model.clearUnsavedEdit(u"id-One"_s);
    ASSERT_NE(content().focusWidget(), nullptr);
    EXPECT_TRUE(sidebar().isAncestorOf(content().focusWidget()));
    EXPECT_EQ(qobject_cast<QAbstractButton*>(content().focusWidget()), nullptr);
    EXPECT_TRUE(sidebar().allowKeyboardNav());

    clickRow(row(u"Empty"_s));
    model.deleteCollection(u"Empty"_s);
    EXPECT_EQ(content().focusWidget(), all());
}

// Header and footer

TEST_F(CollectionSidebarViewTest, TheFootersButtonsAskForTheirSheets)
{
    loadFour();
    open();
    int shortcuts = 0;
    int settings = 0;
    QObject::connect(&content(), &MainContentView::keyboardShortcutsRequested,
                     [&] { ++shortcuts; });
    QObject::connect(&content(), &MainContentView::settingsRequested, [&] { ++settings; });
    EXPECT_EQ(sidebar().shortcutsButton()->text(), u"Shortcuts"_s);
    EXPECT_EQ(sidebar().shortcutsButton()->toolTip(), u"Keyboard Shortcuts"_s);
    EXPECT_EQ(sidebar().settingsButton()->text(), u"Settings"_s);
    click(sidebar().shortcutsButton());
    click(sidebar().settingsButton());
    EXPECT_EQ(shortcuts, 1);
    EXPECT_EQ(settings, 1);
}

TEST_F(CollectionSidebarViewTest, TheLogoOpensTheWebSite)
{
    loadFour();
    open();
    click(sidebar().brandButton());
    ASSERT_EQ(opened.size(), 1);
    EXPECT_EQ(opened.constFirst().scheme(), u"https"_s);
}

TEST_F(CollectionSidebarViewTest, TheMenuButtonOpensTheApplicationMenu)
{
    loadFour();
    open();
    EXPECT_FALSE(sidebar().menuButton()->isVisible());
    sidebar().openApplicationMenu(); // there is none
    QMenu menu;
    menu.addAction(u"Something"_s);
    sidebar().setApplicationMenu(&menu);
    EXPECT_TRUE(sidebar().menuButton()->isVisible());
    EXPECT_EQ(sidebar().menuButton()->accessibleName(), u"Menu"_s);
    click(sidebar().menuButton());
    EXPECT_TRUE(menu.isVisible());
    menu.close();
}

// Access

TEST_F(CollectionSidebarViewTest, RowsTellTheirNameCountAndSelection)
{
    loadFour();
    open();
    clickRow(row(u"Work"_s));
    QAccessibleInterface* work = QAccessible::queryAccessibleInterface(row(u"Work"_s));
    ASSERT_NE(work, nullptr);
    EXPECT_EQ(work->text(QAccessible::Name), u"Work, 3 snippets"_s);
    EXPECT_EQ(work->role(), QAccessible::ListItem);
    EXPECT_TRUE(work->state().selected);
    EXPECT_TRUE(work->state().focused);
    QAccessibleInterface* home = QAccessible::queryAccessibleInterface(row(u"Home"_s));
    EXPECT_EQ(home->text(QAccessible::Name), u"Home, 1 snippet"_s);
    EXPECT_FALSE(home->state().selected);
    ASSERT_NE(home->actionInterface(), nullptr);
    home->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(model.selectedCollection(), u"Home"_s);
    EXPECT_TRUE(home->state().selected);
    EXPECT_TRUE(sidebar().allowKeyboardNav());
}

TEST_F(CollectionSidebarViewTest, AReaderMeetsTheRowsInTheOrderOfTheScreen)
{
    loadFour();
    open();
    const auto reads = [this](QStringList rows) {
        rows.append({u"Shortcuts"_s, u"Settings"_s});
        EXPECT_THAT(readingOrder(), testing::Contains(u"All Snippets, 4 snippets"_s));
        EXPECT_EQ(readingOrder().last(rows.size()), rows)
            << qPrintable(readingOrder().join(u"; "_s));
    };
    const QString everything = u"All Snippets, 4 snippets"_s;
    const QString adding = u"New Collection"_s;
    const QString home = u"Home, 1 snippet"_s;
    const QString empty = u"Empty, 0 snippets"_s;
    reads({everything, adding, u"Work, 3 snippets"_s, home, empty});

    choose(u"Work"_s, u"Rename"_s);
    pass(100ms);
    type(u"Office"_s);
    key(Qt::Key_Return);
    const QString office = u"Office, 3 snippets"_s;
    reads({everything, adding, office, home, empty});

    model.moveCollections({2}, 0);
    reads({everything, adding, empty, office, home});

    editTitle(u"One"_s, u"Uno"_s);
    reads({everything, u"Unsaved, 1 snippet"_s, adding, empty, office, home});
}

TEST_F(CollectionSidebarViewTest, OfTheRowsTabReachesTheSelectedOne)
{
    loadFour();
    open();
    model.selectCollection(u"Home"_s);
    EXPECT_EQ(row(u"Home"_s)->focusPolicy(), Qt::TabFocus);
    EXPECT_EQ(row(u"Work"_s)->focusPolicy(), Qt::NoFocus);
    row(u"Home"_s)->setFocus(Qt::TabFocusReason);
    EXPECT_TRUE(sidebar().allowKeyboardNav());
}

} // namespace
} // namespace vellumry::test
