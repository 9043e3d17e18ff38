// The middle column, with real keys, clicks and drags.

#include "views/MainFixture.h"
#include "views/common/PopupMenu.h"

#include <QAccessible>
#include <QScrollBar>
#include <QWheelEvent>
#include <gmock/gmock.h>

namespace vellumry::test {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

class SnippetListPanelViewTest : public MainFixture {
protected:
    QPlainTextEdit* editor() { return content().findChild<QPlainTextEdit*>(); }

    void loadMany(int count)
    {
        QList<Snippet> snippets;
        for (int i = 0; i < count; ++i)
            snippets.append(
                card(u"S%1"_s.arg(i), i % 2 == 0 ? u"sub"_s : QString(), u"Work"_s, i, 1h));
        world.load({makeCollection(u"W"_s, u"Work"_s)}, snippets);
    }

    void drag(const QString& title, const QString& to)
    {
        QWidget* viewport = cards().viewport();
        QTest::mousePress(viewport, Qt::LeftButton, {}, middleOf(title));
        QTest::mouseMove(viewport, middleOf(to));
    }
    void drop(const QPoint& position)
    {
        QTest::mouseMove(cards().viewport(), position);
        QTest::mouseRelease(cards().viewport(), Qt::LeftButton, {}, position);
    }
};

// Header

TEST_F(SnippetListPanelViewTest, TheHeaderNamesWhatIsListedAndCountsIt)
{
    world.colors.saveColors({{u"Work"_s, u"red"_s}});
    loadFour();
    open();
    EXPECT_EQ(list().header().contents().title, u"All Snippets"_s);
    EXPECT_FALSE(list().header().contents().collectionColor.has_value());
    EXPECT_EQ(list().header().contents().count, 4);
    model.selectCollection(u"Work"_s);
    EXPECT_EQ(list().header().contents().title, u"Work"_s);
    EXPECT_EQ(list().header().contents().collectionColor, world.colors.getColor(u"Work"_s));
    EXPECT_EQ(list().header().contents().count, 3);
    editTitle(u"One"_s, u"Uno"_s);
    model.selectUnsaved();
    EXPECT_EQ(list().header().contents().title, u"All Snippets"_s);
    EXPECT_EQ(list().header().contents().count, 1);
}

TEST_F(SnippetListPanelViewTest, TheAddButtonCreatesASnippet)
{
    loadFour();
    open();
    EXPECT_EQ(list().header().addButton()->toolTip(), u"New Snippet (Ctrl+N)"_s);
    click(list().header().addButton());
    EXPECT_EQ(model.snippets().size(), 5);
    pass(100ms);
    EXPECT_EQ(model.selectedSnippetID(), u"new-2"_s); // the first is its collection
}

// Filter field

TEST_F(SnippetListPanelViewTest, TypingFilters)
{
    loadFour();
    open();
    EXPECT_EQ(filterField().placeholderText(), u"Filter list..."_s);
    world.notifications.focusSnippetSearch();
    EXPECT_TRUE(list().isSearchFocused());
    type(u"three"_s);
    EXPECT_EQ(model.searchText(), u"three"_s);
    EXPECT_EQ(shownTitles(), QStringList(u"Three"_s));
    EXPECT_EQ(list().header().contents().count, 1);
    model.setSearchText(u"two"_s); // by another way
    EXPECT_EQ(filterField().text(), u"two"_s);
}

TEST_F(SnippetListPanelViewTest, ReturnAndTabInTheFieldGoToTheFirstResult)
{
    loadFour();
    open();
    int& posted = counted(&N::focusSnippetList);
    for (const Qt::Key each : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Tab}) {
        model.setSelectedSnippetID(u"id-Three"_s);
        world.notifications.focusSnippetSearch();
        EXPECT_FALSE(list().allowKeyboardNav());
        key(each);
        EXPECT_EQ(selected(), u"One"_s);
        EXPECT_TRUE(list().allowKeyboardNav());
        EXPECT_FALSE(list().isSearchFocused());
        EXPECT_FALSE(filterField().hasFocus());
    }
    EXPECT_EQ(posted, 3);
}

TEST_F(SnippetListPanelViewTest, DownInTheFieldGivesUpTheFocusAndActsATurnLater)
{
    loadFour();
    open();
    model.setSelectedSnippetID(u"id-Three"_s);
    world.notifications.focusSnippetSearch();
    key(Qt::Key_Down);
    EXPECT_FALSE(filterField().hasFocus());
    EXPECT_EQ(selected(), u"Three"_s);
    pass(0ms);
    EXPECT_EQ(selected(), u"One"_s);
    EXPECT_TRUE(list().allowKeyboardNav());
}

TEST_F(SnippetListPanelViewTest, ShiftTabInTheFieldGoesToTheSidebar)
{
    loadFour();
    open();
    world.notifications.focusSnippetSearch();
    key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_TRUE(sidebar().allowKeyboardNav());
    EXPECT_FALSE(list().allowKeyboardNav());
    EXPECT_TRUE(list().sidebarPrefersFocus());
}

TEST_F(SnippetListPanelViewTest, EscapeInTheFieldEmptiesItAndGoesToTheList)
{
    loadFour();
    open();
    model.setSelectedSnippetID(u"id-Two"_s);
    world.notifications.focusSnippetSearch();
    type(u"two"_s);
    key(Qt::Key_Escape);
    EXPECT_EQ(model.searchText(), QString());
    EXPECT_EQ(filterField().text(), QString());
    EXPECT_EQ(selected(), u"Two"_s);
    EXPECT_TRUE(list().allowKeyboardNav());
    // Without a selection that is listed, it is the first one.
    model.setSelectedSnippetID(std::nullopt);
    world.notifications.focusSnippetSearch();
    key(Qt::Key_Escape);
    EXPECT_EQ(selected(), u"One"_s);
}

TEST_F(SnippetListPanelViewTest, UnderThePointerThePanelTakesTheFieldsKeysFirst)
{
    loadFour();
    open();
    model.setSelectedSnippetID(u"id-Two"_s);
    world.notifications.focusSnippetSearch();
    hover(list(), true);
    key(Qt::Key_Down);
    EXPECT_EQ(selected(), u"Three"_s) << "the list's Down, not the field's";
    EXPECT_TRUE(filterField().hasFocus());
    key(Qt::Key_Return); // which the panel does not know
    EXPECT_EQ(selected(), u"One"_s);
}

// Keys

TEST_F(SnippetListPanelViewTest, UpAndDownMoveAndLeadToTheFieldAndBack)
{
    loadFour();
    open();
    clickCard(u"One"_s);
    key(Qt::Key_Down);
    EXPECT_EQ(selected(), u"Two"_s);
    key(Qt::Key_Down);
    key(Qt::Key_Down);
    key(Qt::Key_Down); // the last one stays
    EXPECT_EQ(selected(), u"Four"_s);
    for (int i = 0; i < 3; ++i)
        key(Qt::Key_Up);
    EXPECT_EQ(selected(), u"One"_s);
    key(Qt::Key_Up);
    EXPECT_TRUE(filterField().hasFocus());
    EXPECT_FALSE(list().allowKeyboardNav());
    EXPECT_EQ(selected(), u"One"_s);
    key(Qt::Key_Down);
    pass(0ms);
    EXPECT_TRUE(list().allowKeyboardNav());
    EXPECT_EQ(selected(), u"One"_s);
}

TEST_F(SnippetListPanelViewTest, ShiftTabAndShiftEscapeGoToTheField)
{
    loadFour();
    open();
    for (const Qt::Key each : {Qt::Key_Backtab, Qt::Key_Escape}) {
        clickCard(u"Two"_s);
        key(each, Qt::ShiftModifier);
        EXPECT_TRUE(filterField().hasFocus());
        EXPECT_FALSE(list().allowKeyboardNav());
        EXPECT_FALSE(list().sidebarPrefersFocus());
    }
}

TEST_F(SnippetListPanelViewTest, TabGoesToTheTitleAndRightToTheText)
{
    loadFour();
    open();
    int& title = counted(&N::focusSnippetTitle);
    int& text = counted(&N::focusSnippetEditor);
    clickCard(u"Two"_s);
    key(Qt::Key_Tab);
    EXPECT_EQ(title, 1);
    EXPECT_FALSE(list().allowKeyboardNav());
    clickCard(u"Two"_s);
    key(Qt::Key_Right);
    EXPECT_EQ(text, 1);
    EXPECT_FALSE(list().allowKeyboardNav());
    EXPECT_EQ(selected(), u"Two"_s);
}

TEST_F(SnippetListPanelViewTest, TheWayToTheEditorSelectsTheFirstIfNothingIs)
{
    loadFour();
    open();
    hover(list(), true);
    key(Qt::Key_Tab);
    EXPECT_EQ(selected(), u"One"_s);
}

TEST_F(SnippetListPanelViewTest, EscapeClearsTheFilterAndThenGoesToTheSidebar)
{
    loadFour();
    open();
    world.notifications.focusSnippetSearch();
    type(u"t"_s);
    key(Qt::Key_Return);
    key(Qt::Key_Escape);
    EXPECT_EQ(model.searchText(), QString());
    EXPECT_TRUE(list().allowKeyboardNav());
    key(Qt::Key_Escape);
    EXPECT_TRUE(sidebar().allowKeyboardNav());
    EXPECT_FALSE(list().allowKeyboardNav());
    EXPECT_TRUE(list().sidebarPrefersFocus());
}

TEST_F(SnippetListPanelViewTest, LeftGoesToTheSidebar)
{
    loadFour();
    open();
    clickCard(u"Two"_s);
    int& posted = counted(&N::focusCategorySidebar);
    key(Qt::Key_Left);
    EXPECT_EQ(posted, 1);
    EXPECT_TRUE(sidebar().allowKeyboardNav());
    EXPECT_TRUE(list().sidebarPrefersFocus());
}

TEST_F(SnippetListPanelViewTest, OtherKeysWithModifiersPassOn)
{
    loadFour();
    open();
    clickCard(u"Two"_s);
    for (const auto modifier :
         {Qt::ShiftModifier, Qt::ControlModifier, Qt::AltModifier, Qt::MetaModifier})
        key(Qt::Key_Down, modifier);
    key(Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    key(Qt::Key_C);
    EXPECT_EQ(selected(), u"Two"_s);
    EXPECT_TRUE(pasteboard.texts.isEmpty());
    EXPECT_TRUE(list().allowKeyboardNav());
}

TEST_F(SnippetListPanelViewTest, BackWithAnotherModifierPassesOn)
{
    loadFour();
    open();
    clickCard(u"Two"_s);
    for (const auto modifier : {Qt::ControlModifier, Qt::AltModifier, Qt::MetaModifier}) {
        QKeyEvent back(QEvent::KeyPress, Qt::Key_Backtab, Qt::ShiftModifier | modifier);
        QApplication::sendEvent(&cards(), &back);
        key(Qt::Key_Escape, Qt::ShiftModifier | modifier);
        EXPECT_FALSE(filterField().hasFocus());
        EXPECT_TRUE(list().allowKeyboardNav());
    }
}

TEST_F(SnippetListPanelViewTest, WithoutKeysAndPointerItLetsEverythingPass)
{
    loadFour();
    open();
    model.setSelectedSnippetID(u"id-Two"_s);
    key(Qt::Key_Down);
    EXPECT_EQ(selected(), u"Two"_s);
    hover(list(), true);
    EXPECT_TRUE(list().isHoveredPanel());
    key(Qt::Key_Down);
    EXPECT_EQ(selected(), u"Three"_s);
}

TEST_F(SnippetListPanelViewTest, ThePointerThatComesEndsThePreferenceOfTheSidebar)
{
    loadFour();
    open();
    clickCard(u"Two"_s);
    hover(list(), true);
    key(Qt::Key_Left);
    ASSERT_TRUE(list().sidebarPrefersFocus());
    key(Qt::Key_Down);
    EXPECT_EQ(selected(), u"Two"_s) << "the sidebar has the keys, wherever the pointer rests";
    EXPECT_EQ(model.selectedCollection(), u"Work"_s);
    hover(list(), false);
    EXPECT_TRUE(list().sidebarPrefersFocus());
    hover(list(), true);
    EXPECT_FALSE(list().sidebarPrefersFocus());
}

TEST_F(SnippetListPanelViewTest, NotificationsMoveTheKeys)
{
    loadFour();
    open();
    world.notifications.focusSnippetList();
    EXPECT_TRUE(list().allowKeyboardNav());
    EXPECT_EQ(selected(), u"One"_s) << "nothing was selected";
    model.setSelectedSnippetID(u"id-Three"_s);
    world.notifications.focusSnippetList();
    EXPECT_EQ(selected(), u"Three"_s);
    world.notifications.focusSnippetEditor();
    EXPECT_FALSE(list().allowKeyboardNav());
    world.notifications.focusSnippetList();
    world.notifications.focusCategorySidebar();
    EXPECT_FALSE(list().allowKeyboardNav());
    world.notifications.focusSnippetSearch();
    EXPECT_TRUE(filterField().hasFocus());
    world.notifications.focusSnippetList();
    EXPECT_FALSE(list().isSearchFocused());
}

TEST_F(SnippetListPanelViewTest, ATextThatIsClickedTakesTheKeys)
{
    loadFour();
    open();
    clickCard(u"Two"_s);
    ASSERT_TRUE(list().allowKeyboardNav());
    click(*editor()->viewport(), {20, 20});
    editor()->setFocus(Qt::MouseFocusReason);
    EXPECT_FALSE(list().allowKeyboardNav());
    key(Qt::Key_Down);
    EXPECT_EQ(selected(), u"Two"_s);
}

// Copying

TEST_F(SnippetListPanelViewTest, CopyTakesTheRawTextAndCountsTheUse)
{
    loadFour();
    open();
    clickCard(u"Two"_s);
    key(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(pasteboard.texts, QStringList(u"content of {{what}} Two"_s));
    EXPECT_EQ(world.snippet(u"id-Two"_s).usageCount(), 1);
    EXPECT_EQ(list().copiedSnippetID(), u"id-Two"_s);
    pass(799ms);
    EXPECT_EQ(list().copiedSnippetID(), u"id-Two"_s);
    pass(1ms);
    EXPECT_FALSE(list().copiedSnippetID().has_value());
}

TEST_F(SnippetListPanelViewTest, TwoCopiesInQuickSuccessionCountTwoUses)
{
    loadFour();
    open();
    clickCard(u"Two"_s);
    key(Qt::Key_C, Qt::ControlModifier);
    key(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(world.snippet(u"id-Two"_s).usageCount(), 2);
    EXPECT_EQ(pasteboard.texts.size(), 2);
}

TEST_F(SnippetListPanelViewTest, ACopyOfAnotherCardOutlastsTheTimeOfTheFirst)
{
    loadFour();
    open();
    clickCard(u"Two"_s);
    key(Qt::Key_C, Qt::ControlModifier);
    pass(500ms);
    key(Qt::Key_Down);
    key(Qt::Key_C, Qt::ControlModifier);
    pass(300ms);
    EXPECT_EQ(list().copiedSnippetID(), u"id-Three"_s);
    pass(500ms);
    EXPECT_FALSE(list().copiedSnippetID().has_value());
}

TEST_F(SnippetListPanelViewTest, WhatIsNotListedIsNotCopied)
{
    loadFour();
    open();
    clickCard(u"Two"_s);
    model.setSelectedSnippetID(u"id-Four"_s);
    model.selectCollection(u"Work"_s);
    world.notifications.focusCategorySidebar();
    list().copySelectedSnippet();
    EXPECT_TRUE(pasteboard.texts.isEmpty());
    EXPECT_EQ(world.snippet(u"id-Four"_s).usageCount(), 0);
}

TEST_F(SnippetListPanelViewTest, CopyTakesTheDraftsText)
{
    loadFour();
    open();
    Snippet draft = world.snippet(u"id-Two"_s);
    draft.setContent(u"drafted {{x}}"_s);
    model.setUnsavedEdit(draft);
    clickCard(u"Two"_s);
    key(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(pasteboard.texts, QStringList(u"drafted {{x}}"_s));
}

// Cards

TEST_F(SnippetListPanelViewTest, AClickSelectsAndGivesTheListTheKeys)
{
    loadFour();
    open();
    clickRow(sidebar().allRow());
    clickCard(u"Three"_s);
    EXPECT_EQ(selected(), u"Three"_s);
    EXPECT_TRUE(list().allowKeyboardNav());
    EXPECT_FALSE(sidebar().allowKeyboardNav());
    EXPECT_TRUE(cards().hasFocus());
}

TEST_F(SnippetListPanelViewTest, ACardThatMovesUnderAHeldButtonIsClickedAllTheSame)
{
    loadFour();
    open();
    const QPoint place = middleOf(u"Two"_s);
    QTest::mousePress(cards().viewport(), Qt::LeftButton, {}, place);
    model.moveSnippets({0}, 2, false);
    ASSERT_FALSE(cards().cardRect(u"id-Two"_s).contains(place));
    QTest::mouseRelease(cards().viewport(), Qt::LeftButton, {}, place + QPoint(1, 0));
    EXPECT_EQ(selected(), u"Two"_s);
}

TEST_F(SnippetListPanelViewTest, BetweenTheCardsNothingIsClicked)
{
    loadFour();
    open();
    const QRect one = cards().cardRect(u"id-One"_s);
    click(*cards().viewport(), {one.center().x(), one.bottom() + 3});
    EXPECT_FALSE(model.selectedSnippetID().has_value());
}

TEST_F(SnippetListPanelViewTest, CardsHaveTheirHeightsMarginsAndGaps)
{
    loadFour();
    open();
    const QRect one = cards().cardRect(u"id-One"_s);
    const QRect two = cards().cardRect(u"id-Two"_s);
    EXPECT_EQ(one.height(), 78);
    EXPECT_EQ(two.height(), 60);
    EXPECT_EQ(one.x(), 12);
    EXPECT_EQ(two.y() - one.bottom() - 1, 6);
}

TEST_F(SnippetListPanelViewTest, TheCardUnderThePointerIsTold)
{
    loadFour();
    open();
    QTest::mouseMove(cards().viewport(), middleOf(u"Two"_s));
    EXPECT_EQ(list().hoveredID(), u"id-Two"_s);
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(cards().viewport(), &leave);
    EXPECT_FALSE(list().hoveredID().has_value());
}

TEST_F(SnippetListPanelViewTest, ADraftsTitleShowsAndTheCardIsMarked)
{
    loadFour();
    open();
    const QRect one = cards().cardRect(u"id-One"_s);
    const QPoint corner(one.right() - 11, one.top() + 11); // within the flap
    const auto colorThere = [&] {
        const QImage image = cards().viewport()->grab().toImage();
        return image.pixelColor((QPointF(corner) * image.devicePixelRatio()).toPoint());
    };
    EXPECT_NE(colorThere().rgb(), theme.colors().draft.rgb());
    editTitle(u"One"_s, u"Uno"_s);
    const QModelIndex row = cards().model()->index(0, 0);
    EXPECT_EQ(row.data(Qt::AccessibleTextRole).toString(), u"Uno, first, Work, 12 min, unsaved"_s);
    EXPECT_EQ(colorThere().rgb(), theme.colors().draft.rgb());
    model.clearUnsavedEdit(u"id-One"_s);
    EXPECT_EQ(row.data(Qt::AccessibleTextRole).toString(), u"One, first, Work, 12 min"_s);
}

TEST_F(SnippetListPanelViewTest, TheMenuDeletesTheCardItWasOpenedOn)
{
    loadFour();
    open();
    model.setSelectedSnippetID(u"id-One"_s);
    QContextMenuEvent event(QContextMenuEvent::Mouse, middleOf(u"Two"_s),
                            cards().viewport()->mapToGlobal(middleOf(u"Two"_s)));
    QApplication::sendEvent(cards().viewport(), &event);
    auto* menu = qobject_cast<PopupMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    ASSERT_EQ(menu->actions().size(), 1);
    EXPECT_EQ(menu->actions().constFirst()->text(), u"Delete"_s);
    menu->actions().constFirst()->trigger();
    menu->close();
    EXPECT_TRUE(model.showDeleteConfirmation());
    EXPECT_EQ(model.snippetIDToDelete(), u"id-Two"_s);
    EXPECT_EQ(selected(), u"One"_s);
}

TEST_F(SnippetListPanelViewTest, TheMenuKeyOpensTheMenuOfTheSelectedCard)
{
    loadFour();
    open();
    clickCard(u"Three"_s);
    QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, {});
    QApplication::sendEvent(cards().viewport(), &event);
    auto* menu = qobject_cast<PopupMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    menu->actions().constFirst()->trigger();
    menu->close();
    EXPECT_EQ(model.snippetIDToDelete(), u"id-Three"_s);
}

// Scrolling

TEST_F(SnippetListPanelViewTest, TheSelectedCardIsKeptInSight)
{
    loadMany(1000);
    open();
    const auto isInSight = [&](const QString& title) {
        return cards().viewport()->rect().contains(cards().cardRect(u"id-"_s + title));
    };
    EXPECT_FALSE(isInSight(u"S700"_s));
    model.setSelectedSnippetID(u"id-S700"_s);
    EXPECT_TRUE(isInSight(u"S700"_s));
    model.moveSelectionUp();
    EXPECT_TRUE(isInSight(u"S699"_s));
    model.setSelectedSnippetID(u"id-S999"_s);
    EXPECT_TRUE(isInSight(u"S999"_s));
    model.setSelectedSnippetID(u"id-S0"_s);
    EXPECT_TRUE(isInSight(u"S0"_s));
    EXPECT_EQ(cards().verticalScrollBar()->value(), 0);
}

TEST_F(SnippetListPanelViewTest, AnotherListBeginsAtItsTopAndAReloadStays)
{
    loadMany(1000);
    open();
    cards().verticalScrollBar()->setValue(5000);
    model.loadSnippets();
    EXPECT_EQ(cards().verticalScrollBar()->value(), 5000);
    editTitle(u"S3"_s, u"S three"_s);
    EXPECT_EQ(cards().verticalScrollBar()->value(), 5000);
    model.setSearchText(u"S"_s);
    EXPECT_EQ(cards().verticalScrollBar()->value(), 0);
}

TEST_F(SnippetListPanelViewTest, TheWheelScrolls)
{
    loadMany(100);
    open();
    const QPointF middle = cards().viewport()->rect().center();
    QWheelEvent wheel(middle, cards().viewport()->mapToGlobal(middle), {}, {0, -120}, {}, {},
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(cards().viewport(), &wheel);
    EXPECT_EQ(cards().verticalScrollBar()->value(), 3 * 28);
}

TEST_F(SnippetListPanelViewTest, HoldsAHundredThousandCards)
{
    loadMany(100'000);
    open();
    cards().verticalScrollBar()->setValue(cards().verticalScrollBar()->maximum());
    const QRect last = cards().cardRect(u"id-S99999"_s);
    EXPECT_TRUE(cards().viewport()->rect().contains(last));
    clickCard(u"S99999"_s);
    EXPECT_EQ(selected(), u"S99999"_s);
    model.setSearchText(u"S99998"_s);
    EXPECT_EQ(shownTitles(), QStringList(u"S99998"_s));
    EXPECT_EQ(cards().verticalScrollBar()->maximum(), 0);
}

// Drag

TEST_F(SnippetListPanelViewTest, ADragWhoseReleaseWentElsewhereEndsWithTheNextMove)
{
    loadFour();
    open();
    const auto moveWithoutButton = [this](const QPointF& position) {
        QMouseEvent move(QEvent::MouseMove, position, cards().viewport()->mapToGlobal(position),
                         Qt::NoButton, Qt::NoButton, {});
        QApplication::sendEvent(cards().viewport(), &move);
    };
    drag(u"One"_s, u"Two"_s);
    QContextMenuEvent menu(QContextMenuEvent::Mouse, middleOf(u"Two"_s),
                           cards().viewport()->mapToGlobal(middleOf(u"Two"_s)));
    QApplication::sendEvent(cards().viewport(), &menu);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr) << "a menu would take the release";
    const qsizetype saves = world.storage.saves();
    moveWithoutButton(middleOf(u"Three"_s));
    EXPECT_FALSE(list().draggingSnippetID().has_value());
    EXPECT_EQ(world.storage.saves(), saves + 1) << "it is dropped where it was last seen";
    EXPECT_EQ(shownTitles(), QStringList({u"Two"_s, u"One"_s, u"Three"_s, u"Four"_s}));

    QTest::mousePress(cards().viewport(), Qt::LeftButton, {}, middleOf(u"One"_s));
    moveWithoutButton(middleOf(u"Three"_s));
    moveWithoutButton(middleOf(u"Four"_s));
    EXPECT_FALSE(list().draggingSnippetID().has_value()) << "nor does one begin";
    QTest::mouseRelease(cards().viewport(), Qt::LeftButton);
}

TEST_F(SnippetListPanelViewTest, DraggingMovesAndTheDropSavesOnce)
{
    loadFour();
    open();
    const qsizetype saves = world.storage.saves();
    const QPoint third = middleOf(u"Three"_s);
    drag(u"One"_s, u"Two"_s);
    EXPECT_EQ(list().draggingSnippetID(), u"id-One"_s);
    EXPECT_EQ(shownTitles(), QStringList({u"Two"_s, u"One"_s, u"Three"_s, u"Four"_s}));
    QTest::mouseMove(cards().viewport(), third);
    EXPECT_EQ(shownTitles(), QStringList({u"Two"_s, u"Three"_s, u"One"_s, u"Four"_s}));
    EXPECT_EQ(world.storage.saves(), saves) << "nothing is saved before the drop";
    drop(third);
    EXPECT_EQ(world.storage.saves(), saves + 1);
    EXPECT_FALSE(list().draggingSnippetID().has_value());
    EXPECT_FALSE(model.selectedSnippetID().has_value()) << "a drag is no click";
    EXPECT_EQ(world.snippet(u"id-One"_s).displayOrder(), 2);
}

TEST_F(SnippetListPanelViewTest, DraggingUpMovesBeforeTheCard)
{
    loadFour();
    open();
    const QPoint first = middleOf(u"One"_s);
    drag(u"Four"_s, u"One"_s);
    EXPECT_EQ(shownTitles(), QStringList({u"Four"_s, u"One"_s, u"Two"_s, u"Three"_s}));
    drop(first);
}

TEST_F(SnippetListPanelViewTest, DroppedBesideTheListNothingIsSaved)
{
    loadFour();
    open();
    const qsizetype saves = world.storage.saves();
    drag(u"One"_s, u"Two"_s);
    drop({-300, 100});
    EXPECT_EQ(shownTitles(), QStringList({u"Two"_s, u"One"_s, u"Three"_s, u"Four"_s}));
    EXPECT_EQ(world.storage.saves(), saves);
    EXPECT_FALSE(list().draggingSnippetID().has_value());
}

TEST_F(SnippetListPanelViewTest, InAListWithHiddenRowsTheWrongNeighbourMayMove)
{
    loadFour();
    open();
    model.selectCollection(u"Work"_s);
    Snippet gone = world.snippet(u"id-One"_s);
    gone.setCollection(u"Home"_s);
    model.setUnsavedEdit(gone); // left the list; the snapshot keeps its row
    ASSERT_EQ(shownTitles(), QStringList({u"Two"_s, u"Three"_s}));
    const QPoint place = middleOf(u"Three"_s);
    drag(u"Two"_s, u"Three"_s); // rows 0 and 1 of the list, which are One and Two in the snapshot
    drop(place);
    EXPECT_EQ(model.frozenSnippetOrder(), QStringList({u"id-Two"_s, u"id-One"_s, u"id-Three"_s}));
}

// Access

TEST_F(SnippetListPanelViewTest, TheSelectedCardIsTheCurrentRow)
{
    loadFour();
    open();
    clickCard(u"Three"_s);
    EXPECT_EQ(cards().currentIndex().row(), 2);
    QAccessibleInterface* access = QAccessible::queryAccessibleInterface(&cards());
    ASSERT_NE(access, nullptr);
    EXPECT_EQ(access->text(QAccessible::Name), u"Snippets"_s);
    EXPECT_EQ(access->childCount(), 4);
    EXPECT_EQ(access->child(2)->text(QAccessible::Name), u"Three, third, Work, yesterday"_s);
    EXPECT_TRUE(access->child(2)->state().selected);
    EXPECT_FALSE(access->child(1)->state().selected);
}

TEST_F(SnippetListPanelViewTest, ACardThatAScreenReaderSelectsIsSelected)
{
    loadFour();
    open();
    clickRow(sidebar().allRow());
    QAccessibleInterface* card = QAccessible::queryAccessibleInterface(&cards())->child(1);
    ASSERT_NE(card->actionInterface(), nullptr);
    card->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(selected(), u"Two"_s);
    EXPECT_TRUE(list().allowKeyboardNav());
    EXPECT_FALSE(sidebar().allowKeyboardNav());
}

TEST_F(SnippetListPanelViewTest, TabIntoTheCardsGivesTheListTheKeys)
{
    loadFour();
    open();
    cards().setFocus(Qt::TabFocusReason);
    EXPECT_TRUE(list().allowKeyboardNav());
    EXPECT_EQ(selected(), u"One"_s);
}

} // namespace
} // namespace vellumry::test
