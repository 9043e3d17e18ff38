#include "views/palette/CommandPaletteView.h"

#include "views/PaletteFixture.h"
#include "views/palette/DarkPaletteEmptyState.h"
#include "views/palette/PaletteFooter.h"
#include "views/palette/QuickSearchStyle.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QProxyStyle>
#include <QScrollBar>
#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace vellumry {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class CommandPaletteViewTest : public test::PaletteFixture {
protected:
    CommandPaletteViewTest()
    {
        QObject::connect(&notifications, &NotificationCenter::openMainWindow, &observer,
                         [this] { ++mainWindowsOpened; });
        QObject::connect(
            &notifications, &NotificationCenter::openSnippetInApp, &observer,
            [this](const std::optional<QString>& id) { openedIds << id.value_or(u"-"_s); });
    }

    QStringList headers()
    {
        QStringList result;
        for (const PaletteRow& row : view().rows().lines()) {
            if (row.isHeader())
                result << row.title;
        }
        return result;
    }

    /// What a screen reader says for the lines of the list.
    QStringList rowNames()
    {
        const auto* access = QAccessible::queryAccessibleInterface(&list());
        QStringList names;
        for (int i = 0; i < access->childCount(); ++i) {
            if (access->child(i)->role() == QAccessible::ListItem)
                names << access->child(i)->text(QAccessible::Name);
        }
        return names;
    }

    int scrollOf(const QString& rowId)
    {
        const auto* bar = list().verticalScrollBar();
        const int middle = list().rowRect(rowId).center().y() + bar->value();
        return std::clamp(middle - list().viewport()->height() / 2, bar->minimum(), bar->maximum());
    }

    /// Lets the animation of the list come to its end.
    void waitForScroll(int value)
    {
        EXPECT_TRUE(QTest::qWaitFor([&] { return list().verticalScrollBar()->value() == value; }))
            << list().verticalScrollBar()->value() << " instead of " << value;
    }

    QObject observer;
    int mainWindowsOpened = 0;
    QStringList openedIds;
};

// Life cycle

TEST_F(CommandPaletteViewTest, theModelAppearsWithTheViewAndEachTimeItIsPresented)
{
    view();
    EXPECT_EQ(storage.loads, 0);
    view().show();
    EXPECT_EQ(storage.loads, 1);
    view().setPresented(true);
    EXPECT_EQ(storage.loads, 2);
    view().setPresented(true);
    EXPECT_EQ(storage.loads, 2);
    view().setPresented(false);
    EXPECT_EQ(storage.loads, 2);
    view().hide();
    view().show();
    view().setPresented(true);
    EXPECT_EQ(storage.loads, 3);
}

TEST_F(CommandPaletteViewTest, presentingAgainStartsAfresh)
{
    fillLibrary();
    open();
    type(u"a1"_s);
    key(Qt::Key_Down);
    view().setPresented(false);
    view().hide();
    view().show();
    view().setPresented(true);
    EXPECT_EQ(field().text(), QString());
    EXPECT_EQ(viewModel.selectedIndex(), 0);
    EXPECT_EQ(list().verticalScrollBar()->value(), 0);
    settle();
    EXPECT_THAT(headers(), ElementsAre(u"Actions"_s, u"Most Used"_s));
}

TEST_F(CommandPaletteViewTest, theFieldHasTheFocusOnceShown)
{
    open();
    EXPECT_TRUE(field().hasFocus());
    QTest::keyClicks(&view(), u"x"_s); // to the window, whose focus the field takes
    EXPECT_EQ(view().focusWidget(), &field());
}

// Keys

TEST_F(CommandPaletteViewTest, theArrowsMoveTheSelectionWithoutWrapping)
{
    fillLibrary();
    open();
    key(Qt::Key_Up);
    EXPECT_EQ(viewModel.selectedIndex(), 0);
    for (int i = 0; i < 30; ++i)
        key(Qt::Key_Down);
    EXPECT_EQ(viewModel.selectedIndex(), 10);
    key(Qt::Key_Down);
    EXPECT_EQ(viewModel.selectedIndex(), 10);
    key(Qt::Key_Up);
    EXPECT_EQ(viewModel.selectedIndex(), 9);
}

TEST_F(CommandPaletteViewTest, escapeAsksToClose)
{
    open();
    key(Qt::Key_Escape);
    EXPECT_EQ(dismissals, 1);
    EXPECT_THAT(clipboard.texts, IsEmpty());
}

TEST_F(CommandPaletteViewTest, returnOnTheFirstRowOpensTheMainWindow)
{
    open();
    key(Qt::Key_Return);
    EXPECT_EQ(mainWindowsOpened, 1);
    EXPECT_EQ(dismissals, 1);
}

TEST_F(CommandPaletteViewTest, returnCopiesTheSelectedSnippet)
{
    fillLibrary();
    open();
    type(u"a"_s);
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    EXPECT_THAT(clipboard.texts, ElementsAre(u"content of a01"_s));
    EXPECT_EQ(dismissals, 1);
}

TEST_F(CommandPaletteViewTest, rightArrowOpensTheSnippetOnlyAtTheEndOfTheText)
{
    fillLibrary();
    open();
    type(u"a0"_s);
    field().setCursorPosition(1);
    key(Qt::Key_Right);
    EXPECT_EQ(field().cursorPosition(), 2);
    EXPECT_THAT(openedIds, IsEmpty());
    key(Qt::Key_Down);
    key(Qt::Key_Right);
    EXPECT_THAT(openedIds, ElementsAre(u"id-a01"_s));
    EXPECT_EQ(dismissals, 1);
}

TEST_F(CommandPaletteViewTest, copyWithSelectedTextCopiesItAndKeepsThePanel)
{
    fillLibrary();
    open();
    type(u"a01"_s);
    field().setSelection(0, 2);
    key(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"a0"_s);
    EXPECT_EQ(dismissals, 0);
    EXPECT_THAT(clipboard.texts, IsEmpty());

    field().deselect();
    key(Qt::Key_C, Qt::ControlModifier);
    EXPECT_THAT(clipboard.texts, ElementsAre(u"content of a01"_s));
    EXPECT_EQ(dismissals, 1);
}

TEST_F(CommandPaletteViewTest, aLongTextIsCutBeforeItReachesTheModel)
{
    open();
    QGuiApplication::clipboard()->setText(QString(60, u'q'));
    key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(field().text(), QString(50, u'q'));
    EXPECT_EQ(viewModel.query(), QString(50, u'q'));
}

// Rows

TEST_F(CommandPaletteViewTest, anEmptyLibraryShowsActionsAlone)
{
    open();
    EXPECT_THAT(headers(), ElementsAre(u"Actions"_s));
    EXPECT_EQ(view().rows().totalItemCount(), 1);
    EXPECT_EQ(viewModel.totalItemCount(), 1);
}

TEST_F(CommandPaletteViewTest, countsTheSameRowsAsTheModel)
{
    fillLibrary();
    for (int i = 0; i < 7; ++i)
        storage.snippets[i].setLastUsedAt(clock.now() - std::chrono::seconds(i));
    open();
    EXPECT_THAT(headers(), ElementsAre(u"Actions"_s, u"Today"_s, u"Most Used"_s));
    EXPECT_EQ(view().rows().totalItemCount(), 16);
    EXPECT_EQ(viewModel.totalItemCount(), 16);
    type(u"a"_s);
    EXPECT_THAT(headers(), ElementsAre(u"Results"_s));
    EXPECT_EQ(view().rows().totalItemCount(), viewModel.totalItemCount());
    type(u"0"_s);
    EXPECT_EQ(view().rows().totalItemCount(), viewModel.totalItemCount());
}

TEST_F(CommandPaletteViewTest, aQueryWithoutHitsShowsTheMessage)
{
    fillLibrary();
    open();
    auto* message = view().findChild<DarkPaletteEmptyState*>();
    EXPECT_FALSE(message->isVisible());
    type(u"zebra"_s);
    EXPECT_TRUE(message->isVisible());
    EXPECT_EQ(message->accessibleName(), u"No results found"_s);
    EXPECT_EQ(message->accessibleDescription(), u"Try different keywords"_s);
    EXPECT_FALSE(list().isVisible());
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    EXPECT_EQ(dismissals, 0);
    field().clear();
    viewModel.setQuery({});
    settle();
    EXPECT_FALSE(message->isVisible());
    EXPECT_TRUE(list().isVisible());
}

TEST_F(CommandPaletteViewTest, theSelectedRowIsDrawnOnItsBackground)
{
    fillLibrary();
    open();
    EXPECT_EQ(rowColor(u"open-app-item"_s), QColor(0x2E, 0x2E, 0x2E));
    EXPECT_EQ(rowColor(u"id-a00"_s), QColor(0x17, 0x17, 0x17));
    key(Qt::Key_Down);
    EXPECT_EQ(rowColor(u"open-app-item"_s), QColor(0x17, 0x17, 0x17));
    EXPECT_EQ(rowColor(u"id-a00"_s), QColor(0x2E, 0x2E, 0x2E));
}

TEST_F(CommandPaletteViewTest, aSelectionPastTheEndIsDrawnAtTheEnd)
{
    fillLibrary();
    open();
    type(u"a"_s);
    viewModel.setSelectedIndex(9);
    field().setText(u"a1"_s);
    viewModel.setQuery(u"a1"_s);
    // The search has run, but the selection still stands where it stood.
    QObject guard;
    int drawnLine = -1;
    QObject::connect(&viewModel, &CommandPaletteViewModel::resultsChanged, &guard, [&] {
        EXPECT_EQ(viewModel.selectedIndex(), 9);
        drawnLine = list().selectedLine();
    });
    settle();
    EXPECT_EQ(view().rows().totalItemCount(), 2);
    EXPECT_EQ(drawnLine, 2); // a header, then the rows 0 and 1
    EXPECT_EQ(viewModel.selectedIndex(), 0);
}

TEST_F(CommandPaletteViewTest, aSelectionOutsideTheRowsIsWrittenBack)
{
    fillLibrary();
    open();
    viewModel.setSelectedIndex(40);
    EXPECT_EQ(viewModel.selectedIndex(), 10);
    viewModel.setSelectedIndex(-3);
    EXPECT_EQ(viewModel.selectedIndex(), 0);
    type(u"zebra"_s);
    viewModel.setSelectedIndex(2);
    EXPECT_EQ(viewModel.selectedIndex(), 0);
}

// Passwords and calculations

TEST_F(CommandPaletteViewTest, passwordsShowNoOtherSection)
{
    fillLibrary();
    open();
    type(u"/rand:16"_s);
    EXPECT_THAT(headers(), ElementsAre(u"Random Password"_s));
    EXPECT_EQ(view().rows().totalItemCount(), 3);
    EXPECT_EQ(viewModel.totalItemCount(), 3);
    EXPECT_TRUE(list().isVisible());
    EXPECT_FALSE(view().findChild<DarkPaletteEmptyState*>()->isVisible());
}

TEST_F(CommandPaletteViewTest, returnCopiesTheSelectedPasswordAsASecret)
{
    open();
    type(u"/rand:16"_s);
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    EXPECT_THAT(clipboard.secrets, ElementsAre(viewModel.passwordResults()[1].password));
    EXPECT_THAT(clipboard.texts, IsEmpty());
    EXPECT_EQ(dismissals, 1);
}

TEST_F(CommandPaletteViewTest, aClickOnAPasswordSelectsItAndCopiesIt)
{
    open();
    type(u"/rand:16"_s);
    click(u"password-"_s + viewModel.passwordResults()[2].id);
    EXPECT_EQ(viewModel.selectedIndex(), 2);
    EXPECT_THAT(clipboard.secrets, ElementsAre(viewModel.passwordResults()[2].password));
    EXPECT_EQ(dismissals, 1);
}

TEST_F(CommandPaletteViewTest, aCalculationIsTheFirstRow)
{
    storage.snippets = {snippet(u"2+3*4 explained"_s), snippet(u"2+3*4 again"_s)};
    open();
    type(u"2+3*4="_s);
    EXPECT_THAT(headers(), ElementsAre(u"Calculator"_s, u"Results"_s));
    EXPECT_EQ(view().rows().totalItemCount(), 3);
    EXPECT_EQ(viewModel.totalItemCount(), 3);
    key(Qt::Key_Return);
    EXPECT_THAT(clipboard.texts, ElementsAre(u"14"_s));
    EXPECT_EQ(dismissals, 1);
}

TEST_F(CommandPaletteViewTest, aClickOnTheCalculationCopiesTheRowThatIsSelected)
{
    storage.snippets = {snippet(u"10 km run"_s), snippet(u"10 km walk"_s)};
    open();
    type(u"10 km="_s);
    key(Qt::Key_Down);
    click(u"calculator-result"_s);
    EXPECT_EQ(viewModel.selectedIndex(), 1);
    EXPECT_THAT(clipboard.texts, ElementsAre(u"content of 10 km run"_s));
    key(Qt::Key_Up);
    click(u"calculator-result"_s);
    EXPECT_THAT(clipboard.texts, ElementsAre(u"content of 10 km run"_s, u"6.2137 miles"_s));
}

TEST_F(CommandPaletteViewTest, rightArrowOnTheCalculationOpensTheFirstResult)
{
    storage.snippets = {snippet(u"10 km run"_s), snippet(u"10 km walk"_s)};
    open();
    type(u"10 km="_s);
    key(Qt::Key_Right);
    EXPECT_THAT(openedIds, ElementsAre(u"id-10 km run"_s));
    key(Qt::Key_Down);
    key(Qt::Key_Right);
    EXPECT_THAT(openedIds, ElementsAre(u"id-10 km run"_s, u"id-10 km walk"_s));
}

TEST_F(CommandPaletteViewTest, theListScrollsToTheSelectedRowBelowACalculation)
{
    for (int i = 0; i < 12; ++i)
        storage.snippets.append(snippet(u"1+1 no %1"_s.arg(i, 2, 10, QChar(u'0'))));
    open();
    type(u"1+1="_s);
    viewModel.setSelectedIndex(10);
    EXPECT_GT(list().verticalScrollBar()->maximum(), 0);
    waitForScroll(list().verticalScrollBar()->maximum());
    viewModel.setSelectedIndex(0);
    waitForScroll(0);
}

TEST_F(CommandPaletteViewTest, passwordsOfTheLastShowingGoWithTheField)
{
    fillLibrary();
    open();
    type(u"/rand:8"_s);
    view().setPresented(false);
    view().hide();
    view().show();
    view().setPresented(true);
    // The old query is searched at once, and stands until the empty one is.
    EXPECT_THAT(headers(), ElementsAre(u"Actions"_s, u"Random Password"_s));
    EXPECT_EQ(view().rows().totalItemCount(), viewModel.totalItemCount());
    EXPECT_EQ(list().selectedLine(), 1);
    settle();
    EXPECT_THAT(headers(), ElementsAre(u"Actions"_s, u"Most Used"_s));
}

// Mouse

TEST_F(CommandPaletteViewTest, aClickOnTheOpenRowOpensTheMainWindow)
{
    fillLibrary();
    open();
    viewModel.setSelectedIndex(2);
    click(u"open-app-item"_s);
    EXPECT_EQ(mainWindowsOpened, 1);
    EXPECT_EQ(dismissals, 1);
    EXPECT_EQ(viewModel.selectedIndex(), 2);
    EXPECT_THAT(clipboard.texts, IsEmpty());
}

TEST_F(CommandPaletteViewTest, aClickCopiesThatSnippetWhateverIsSelected)
{
    fillLibrary();
    storage.snippets[3].setLastUsedAt(clock.now() - 1s);
    open();
    click(u"id-a01"_s);
    click(u"today-id-a03"_s);
    EXPECT_THAT(clipboard.texts, ElementsAre(u"content of a01"_s, u"content of a03"_s));
    EXPECT_EQ(viewModel.selectedIndex(), 0);
    EXPECT_EQ(dismissals, 2);
}

TEST_F(CommandPaletteViewTest, onlyTheMainButtonWithinOneRowClicks)
{
    fillLibrary();
    open();
    QWidget* viewport = list().viewport();
    QTest::mouseClick(viewport, Qt::RightButton, {}, middleOf(u"id-a01"_s));
    QTest::mousePress(viewport, Qt::LeftButton, {}, middleOf(u"id-a01"_s));
    QTest::mouseRelease(viewport, Qt::LeftButton, {}, middleOf(u"id-a02"_s));
    const QPoint header(60, list().rowRect(u"open-app-item"_s).top() - 10);
    QTest::mouseClick(viewport, Qt::LeftButton, {}, header);
    EXPECT_EQ(dismissals, 0);
    EXPECT_THAT(clipboard.texts, IsEmpty());
}

TEST_F(CommandPaletteViewTest, hoverLightsARowAndLeavesTheSelection)
{
    fillLibrary();
    open();
    EXPECT_EQ(list().hoveredIndex(), std::nullopt);
    moveTo(u"id-a01"_s);
    EXPECT_EQ(list().hoveredIndex(), 2);
    EXPECT_EQ(viewModel.selectedIndex(), 0);
    EXPECT_EQ(rowColor(u"open-app-item"_s), QColor(0x2E, 0x2E, 0x2E));
    EXPECT_EQ(rowColor(u"id-a01"_s), QColor(0x26, 0x26, 0x26));
    moveTo(u"open-app-item"_s);
    EXPECT_EQ(list().hoveredIndex(), -1);
    EXPECT_EQ(rowColor(u"open-app-item"_s), QColor(0x2E, 0x2E, 0x2E));
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(list().viewport(), &leave);
    EXPECT_EQ(list().hoveredIndex(), std::nullopt);
    EXPECT_EQ(rowColor(u"id-a01"_s), QColor(0x17, 0x17, 0x17));
}

TEST_F(CommandPaletteViewTest, thePointerBetweenTheRowsHoversNothing)
{
    fillLibrary();
    open();
    moveTo(u"id-a01"_s);
    QTest::mouseMove(list().viewport(), QPoint(60, list().rowRect(u"id-a00"_s).top() - 10));
    EXPECT_EQ(list().hoveredIndex(), std::nullopt);
}

TEST_F(CommandPaletteViewTest, aCalculationAndAResultAreLitAtOnceOneSelectedOneHovered)
{
    storage.snippets = {snippet(u"10 km run"_s), snippet(u"10 km walk"_s)};
    open();
    type(u"10 km="_s);
    moveTo(u"id-10 km run"_s);
    EXPECT_EQ(list().hoveredIndex(), 1);
    EXPECT_EQ(rowColor(u"calculator-result"_s), QColor(0x2E, 0x2E, 0x2E));
    EXPECT_EQ(rowColor(u"id-10 km run"_s), QColor(0x26, 0x26, 0x26));

    key(Qt::Key_Down);
    moveTo(u"calculator-result"_s);
    EXPECT_EQ(list().hoveredIndex(), -100);
    EXPECT_EQ(rowColor(u"calculator-result"_s), QColor(0x26, 0x26, 0x26));
    EXPECT_EQ(rowColor(u"id-10 km run"_s), QColor(0x2E, 0x2E, 0x2E));
}

TEST_F(CommandPaletteViewTest, returnActsOnTheSelectedRowNotTheHoveredOne)
{
    fillLibrary();
    open();
    key(Qt::Key_Down);
    moveTo(u"id-a03"_s);
    key(Qt::Key_Return);
    EXPECT_THAT(clipboard.texts, ElementsAre(u"content of a00"_s));
}

// Scrolling

TEST_F(CommandPaletteViewTest, theSelectedRowScrollsToTheMiddle)
{
    fillLibrary();
    open();
    viewModel.setSelectedIndex(6);
    const int target = scrollOf(u"id-a05"_s);
    EXPECT_GT(target, 0);
    waitForScroll(target);
    const int middle = list().viewport()->height() / 2;
    EXPECT_NEAR(list().rowRect(u"id-a05"_s).center().y(), middle, 1);
    viewModel.setSelectedIndex(10);
    waitForScroll(list().verticalScrollBar()->maximum());
    viewModel.setSelectedIndex(0);
    waitForScroll(0);
}

TEST_F(CommandPaletteViewTest, scrollingTakesItsTimeUnlessAnimationsAreOff)
{
    fillLibrary();
    open();
    viewModel.setSelectedIndex(10);
    EXPECT_EQ(list().verticalScrollBar()->value(), 0);
    const auto* scrolling = list().findChild<QPropertyAnimation*>();
    EXPECT_EQ(scrolling->duration(), 150);
    EXPECT_EQ(scrolling->easingCurve(), QEasingCurve::OutCubic);
    waitForScroll(list().verticalScrollBar()->maximum());

    class Still final : public QProxyStyle {
        int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                      QStyleHintReturn* data) const override
        {
            return hint == SH_Widget_Animation_Duration
                       ? 0
                       : QProxyStyle::styleHint(hint, option, widget, data);
        }
    } still;
    list().setStyle(&still);
    viewModel.setSelectedIndex(0);
    EXPECT_EQ(list().verticalScrollBar()->value(), 0);
    list().setStyle(nullptr);
}

TEST_F(CommandPaletteViewTest, newRowsShowTheSelectedOneAtOnce)
{
    fillLibrary();
    open();
    type(u"a"_s);
    QTest::qWait(0);
    list().verticalScrollBar()->setValue(list().verticalScrollBar()->maximum());
    ASSERT_GT(list().verticalScrollBar()->value(), 0);
    type(u"0"_s);
    EXPECT_EQ(list().verticalScrollBar()->value(), 0);
}

TEST_F(CommandPaletteViewTest, theWheelScrollsAndShowsTheHandle)
{
    fillLibrary();
    open();
    EXPECT_FALSE(list().scrollHandle().isHandleShown());
    QWheelEvent wheel(QPointF(100, 100), list().viewport()->mapToGlobal(QPointF(100, 100)), {},
                      {0, -120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(list().viewport(), &wheel);
    EXPECT_GT(list().verticalScrollBar()->value(), 0);
    EXPECT_TRUE(list().scrollHandle().isHandleShown());
}

// Looks

TEST_F(CommandPaletteViewTest, fieldListAndFooterHaveTheirPlaces)
{
    EXPECT_EQ(view().size(), QSize(680, 480));
    EXPECT_EQ(view().searchField().geometry(), QRect(0, 0, 680, 60));
    EXPECT_EQ(list().geometry().top(), 60);
    EXPECT_EQ(list().geometry().bottom(), 439);
}

TEST_F(CommandPaletteViewTest, theFooterHintsAtThreeKeys)
{
    QStringList hints;
    for (const DarkKeyboardHint& hint : PaletteFooter::hints)
        hints << hint.key.toString() + u' ' + hint.label.toString();
    EXPECT_THAT(hints, ElementsAre(u"↵ Copy"_s, u"→ Open"_s, u"esc Close"_s));
    const auto* footer = view().findChild<PaletteFooter*>();
    EXPECT_EQ(footer->geometry(), QRect(0, 440, 680, 40));
    EXPECT_EQ(footer->accessibleName(), u"Vellumry"_s);
    EXPECT_EQ(footer->accessibleDescription(), u"Return: Copy, Right Arrow: Open, Escape: Close"_s);
}

TEST_F(CommandPaletteViewTest, isPaintedForTheScaleOfTheScreen)
{
    open();
    const QImage image = view().grab().toImage();
    const qreal ratio = view().devicePixelRatioF();
    EXPECT_EQ(image.size(), (QSizeF(680, 480) * ratio).toSize());
    EXPECT_EQ(image.devicePixelRatio(), ratio);
}

TEST_F(CommandPaletteViewTest, groundLinesAndCornersHaveTheirColours)
{
    open();
    EXPECT_EQ(pixel({300, 30}), QColor(0x17, 0x17, 0x17));
    EXPECT_EQ(pixel({300, 460}), QColor(0x17, 0x17, 0x17));
    const QImage image = view().grab().toImage();
    const qreal ratio = image.devicePixelRatio();
    const QColor line = image.pixelColor(qRound(300 * ratio), qRound(60 * ratio) - 1);
    EXPECT_NEAR(line.red(), 0x17 + (255 - 0x17) * 0x14 / 255.0, 1);
    const QColor edge = image.pixelColor(0, image.height() / 2);
    EXPECT_NEAR(edge.red(), 0x17 + (255 - 0x17) * 0x24 / 255.0, 1);
}

TEST_F(CommandPaletteViewTest, theWindowBecomingActiveOrNotPaintsNoRow)
{
    fillLibrary();
    open();
    QCoreApplication::processEvents();
    struct PaintCounter : QObject {
        int count = 0;
        bool eventFilter(QObject*, QEvent* event) override
        {
            count += event->type() == QEvent::Paint ? 1 : 0;
            return false;
        }
    } counter;
    list().viewport()->installEventFilter(&counter);
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    QCoreApplication::processEvents();
    EXPECT_FALSE(view().isActiveWindow());
    EXPECT_EQ(counter.count, 0);
}

// Access

TEST_F(CommandPaletteViewTest, fieldListAndRowsHaveNames)
{
    storage.snippets = {snippet(u"Deploy"_s, clock.now() - 5min, 12)};
    open();
    auto* fieldAccess = QAccessible::queryAccessibleInterface(&field());
    EXPECT_EQ(fieldAccess->text(QAccessible::Name), u"Search snippets"_s);
    EXPECT_EQ(fieldAccess->role(), QAccessible::EditableText);

    auto* access = QAccessible::queryAccessibleInterface(&list());
    EXPECT_EQ(access->role(), QAccessible::List);
    EXPECT_EQ(access->text(QAccessible::Name), u"Snippets"_s);
    const QString time = timeString(clock.now() - 5min);
    EXPECT_THAT(rowNames(),
                ElementsAre(u"Actions"_s, u"Open Vellumry, View all snippets"_s, u"Today"_s,
                            u"Deploy, Shell, "_s + time, u"Most Used"_s, u"Deploy, Shell, 12×"_s));
}

TEST_F(CommandPaletteViewTest, aCalculationHasAName)
{
    open();
    type(u"10 km="_s);
    EXPECT_THAT(rowNames(), ElementsAre(u"Calculator"_s, u"10 km = 6.2137 miles, Copy result"_s));
}

TEST_F(CommandPaletteViewTest, passwordsHaveNames)
{
    open();
    type(u"/rand:8"_s);
    const auto passwords = viewModel.passwordResults();
    ASSERT_EQ(passwords.size(), 3);
    EXPECT_THAT(rowNames(),
                ElementsAre(u"Random Password"_s, passwords[0].password + u", Simple, a-z, 0-9"_s,
                            passwords[1].password + u", Medium, A-z, 0-9, -_@#"_s,
                            passwords[2].password + u", Strong, A-z, 0-9, !@#$%..."_s));
}

TEST_F(CommandPaletteViewTest, theSelectedRowIsSelectedForAScreenReader)
{
    fillLibrary();
    open();
    key(Qt::Key_Down);
    auto* access = QAccessible::queryAccessibleInterface(&list());
    QStringList selected;
    for (int i = 0; i < access->childCount(); ++i) {
        if (access->child(i)->state().selected)
            selected << access->child(i)->text(QAccessible::Name);
    }
    EXPECT_THAT(selected, ElementsAre(u"a00, Shell"_s));
}

} // namespace
} // namespace vellumry
