#include "views/common/SheetHost.h"

#include "support/Eventually.h"
#include "views/MainFixture.h"
#include "views/common/KeyEventMonitor.h"
#include "views/common/TextField.h"

#include <QAccessible>
#include <QLineEdit>
#include <QShortcut>
#include <QTest>
#include <QVBoxLayout>
#include <QVariantAnimation>
#include <QWindow>
#include <gtest/gtest.h>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;

class SheetHostTest : public testing::Test {
protected:
    struct Sheet : QWidget {
        explicit Sheet(const Theme& theme)
            : field(new TextField(theme, u"Field"_s, this)),
              cancel(new Button(theme, Button::Kind::secondary, u"Cancel"_s, this)),
              accept(new Button(theme, Button::Kind::primary, u"OK"_s, this))
        {
            setFixedWidth(300);
            auto* column = new QVBoxLayout(this);
            for (QWidget* each : {static_cast<QWidget*>(field), static_cast<QWidget*>(cancel),
                                  static_cast<QWidget*>(accept)})
                column->addWidget(each);
            accept->setDefault(true);
            QObject::connect(accept, &Button::clicked, [this] { ++accepted; });
        }
        TextField* field;
        Button* cancel;
        Button* accept;
        int accepted = 0;
    };

    void SetUp() override
    {
        window.resize(600, 400);
        behind->resize(200, 30);
        window.show();
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        behind->setFocus();
    }
    Sheet* present()
    {
        auto* sheet = new Sheet(theme);
        host->present(sheet, {.onCancel =
                                  [this, sheet] {
                                      ++cancelled;
                                      host->dismiss(sheet);
                                  },
                              .firstFocus = nullptr});
        return sheet;
    }
    void key(Qt::Key which) { QTest::keyClick(window.focusWidget(), which); }

    ReducedMotion reducedMotion;
    Theme theme{ColorScheme::light, 1};
    QWidget window;
    QLineEdit* behind = new QLineEdit(&window);
    SheetHost* host = new SheetHost(theme, &window);
    int cancelled = 0;
};

TEST_F(SheetHostTest, CoversTheWindowAndStandsInTheMiddle)
{
    EXPECT_FALSE(host->isVisible());
    EXPECT_FALSE(SheetHost::isCovering(*behind));
    Sheet* sheet = present();
    EXPECT_TRUE(SheetHost::isCovering(*behind));
    EXPECT_EQ(host->geometry(), window.rect());
    EXPECT_EQ(sheet->width(), 300);
    EXPECT_NEAR(sheet->mapTo(&window, sheet->rect().center()).x(), 300, 1);
    window.resize(900, 700);
    QApplication::processEvents();
    EXPECT_EQ(host->geometry(), window.rect());
    EXPECT_NEAR(sheet->mapTo(&window, sheet->rect().center()).x(), 450, 1);
}

TEST_F(SheetHostTest, IsADialogToScreenReaders)
{
    auto* sheet = new Sheet(theme);
    sheet->setAccessibleName(u"Rename Collection"_s);
    host->present(sheet, {});
    QAccessibleInterface* dialog = QAccessible::queryAccessibleInterface(sheet->parentWidget());
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->role(), QAccessible::Dialog);
    EXPECT_EQ(dialog->text(QAccessible::Name), u"Rename Collection"_s);
    EXPECT_TRUE(dialog->state().modal);
}

TEST_F(SheetHostTest, NeverGrowsHigherThanTheWindow)
{
    auto* tall = new QWidget;
    tall->setMinimumHeight(0);
    auto* column = new QVBoxLayout(tall);
    auto* filling = new QWidget;
    filling->setMinimumSize(200, 10);
    filling->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    column->addWidget(filling);
    column->addSpacing(2000);
    host->present(tall, {});
    EXPECT_EQ(tall->height(), window.height() - 32);
}

TEST_F(SheetHostTest, TabStaysInTheSheet)
{
    const Sheet* sheet = present();
    EXPECT_EQ(window.focusWidget(), sheet->field);
    key(Qt::Key_Tab);
    EXPECT_EQ(window.focusWidget(), sheet->cancel);
    EXPECT_TRUE(sheet->cancel->isRingShown());
    key(Qt::Key_Tab);
    EXPECT_EQ(window.focusWidget(), sheet->accept);
    key(Qt::Key_Tab);
    EXPECT_EQ(window.focusWidget(), sheet->field);
    key(Qt::Key_Backtab);
    EXPECT_EQ(window.focusWidget(), sheet->accept);
}

TEST_F(SheetHostTest, EscapeCancelsAndTheFocusGoesBack)
{
    present();
    EXPECT_FALSE(behind->hasFocus());
    key(Qt::Key_Escape);
    EXPECT_EQ(cancelled, 1);
    EXPECT_FALSE(host->isPresenting());
    EXPECT_TRUE(behind->hasFocus());
    EXPECT_FALSE(host->isVisible());
}

TEST_F(SheetHostTest, ReturnPressesTheDefaultButtonOrTheOneThatHasTheFocus)
{
    Sheet* sheet = present();
    key(Qt::Key_Return);
    EXPECT_EQ(sheet->accepted, 1);
    sheet->accept->setEnabled(false);
    key(Qt::Key_Return);
    EXPECT_EQ(sheet->accepted, 1);
    sheet->accept->setEnabled(true);
    sheet->cancel->setFocus(Qt::TabFocusReason);
    int pressed = 0;
    QObject::connect(sheet->cancel, &Button::clicked, [&] { ++pressed; });
    key(Qt::Key_Return);
    EXPECT_EQ(pressed, 1);
    EXPECT_EQ(sheet->accepted, 1);
}

TEST_F(SheetHostTest, SheetsStandUponSheets)
{
    Sheet* first = present();
    first->cancel->setFocus(Qt::TabFocusReason);
    Sheet* second = present();
    EXPECT_EQ(host->presented(), second);
    key(Qt::Key_Escape);
    EXPECT_EQ(host->presented(), first);
    EXPECT_TRUE(first->cancel->hasFocus());
    key(Qt::Key_Escape);
    EXPECT_EQ(host->presented(), nullptr);
    EXPECT_TRUE(behind->hasFocus());
}

TEST_F(SheetHostTest, WhatIsBehindTakesNoInput)
{
    int keys = 0;
    new KeyEventMonitor([&](const QKeyEvent&) { return ++keys > 0; }, behind);
    present();
    key(Qt::Key_A);
    EXPECT_EQ(keys, 0);
    QWidget* under = window.childAt(behind->geometry().center());
    EXPECT_NE(under, behind);
    key(Qt::Key_Escape);
    key(Qt::Key_A);
    EXPECT_EQ(keys, 1);
}

TEST_F(SheetHostTest, WhatTakesTheFocusBehindGetsItWhenTheSheetGoes)
{
    auto* other = new QLineEdit(&window);
    other->show();
    const Sheet* sheet = present();
    sheet->cancel->setFocus(Qt::TabFocusReason);
    QApplication::processEvents();
    other->setFocus();
    QApplication::processEvents();
    EXPECT_TRUE(sheet->cancel->hasFocus());
    key(Qt::Key_Escape);
    EXPECT_TRUE(other->hasFocus());
}

TEST_F(SheetHostTest, WhatTakesTheFocusInALowerSheetGetsItWhenTheUpperOneGoes)
{
    const Sheet* first = present();
    const Sheet* second = present();
    first->accept->setFocus();
    QApplication::processEvents();
    EXPECT_TRUE(second->isAncestorOf(window.focusWidget()));
    key(Qt::Key_Escape);
    EXPECT_TRUE(first->accept->hasFocus());
    QApplication::processEvents();
    EXPECT_TRUE(first->accept->hasFocus());
    key(Qt::Key_Escape);
    EXPECT_TRUE(behind->hasFocus());
}

TEST_F(SheetHostTest, AFocusGivenToNothingComesBack)
{
    const Sheet* sheet = present();
    sheet->cancel->setFocus(Qt::TabFocusReason);
    QApplication::processEvents();
    sheet->cancel->clearFocus();
    QApplication::processEvents();
    EXPECT_TRUE(sheet->cancel->hasFocus());
    sheet->cancel->setEnabled(false);
    sheet->cancel->clearFocus();
    QApplication::processEvents();
    EXPECT_TRUE(sheet->isAncestorOf(window.focusWidget())) << "what cannot have it does not get it";
}

TEST_F(SheetHostTest, ASheetThatGivesTheFocusToNothingAndGoesGivesItBack)
{
    Sheet* sheet = present();
    QApplication::processEvents();
    window.focusWidget()->clearFocus();
    host->dismiss(sheet);
    EXPECT_TRUE(behind->hasFocus());
}

TEST_F(SheetHostTest, WhereOneSheetTakesThePlaceOfAnotherTheFocusGoesBackBehindBoth)
{
    Sheet* first = present();
    Sheet* second = present();
    host->dismiss(first);
    EXPECT_TRUE(second->isAncestorOf(window.focusWidget()));
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    host->dismiss(second);
    EXPECT_TRUE(behind->hasFocus());
}

TEST_F(SheetHostTest, ALowerSheetHasTheKeysAlsoWhenWhatOpenedTheUpperOneIsGone)
{
    Sheet* first = present();
    first->accept->setFocus(Qt::TabFocusReason);
    QApplication::processEvents();
    Sheet* second = present();
    first->accept->hide();
    QApplication::processEvents();
    host->dismiss(second);
    QApplication::processEvents();
    EXPECT_TRUE(first->isAncestorOf(window.focusWidget()));
    host->dismiss(first);
    EXPECT_TRUE(behind->hasFocus());
}

TEST_F(SheetHostTest, InAWindowThatIsYetToComeASheetHasTheFocusAsWell)
{
    window.hide();
    const Sheet* first = present();
    EXPECT_EQ(window.focusWidget(), first->field);
    auto* second = new Sheet(theme);
    host->present(second, {.onCancel = {}, .firstFocus = second->accept});
    EXPECT_EQ(window.focusWidget(), second->accept);
    window.show();
    QApplication::processEvents();
    EXPECT_EQ(window.focusWidget(), second->accept);
}

TEST_F(SheetHostTest, TellsWhenItBeginsAndWhenItEnds)
{
    QList<bool> told;
    QObject::connect(host, &SheetHost::presentingChanged,
                     [&] { told.append(host->isPresenting()); });
    present();
    present();
    key(Qt::Key_Escape);
    EXPECT_EQ(told, QList<bool>{true});
    key(Qt::Key_Escape);
    EXPECT_EQ(told, (QList<bool>{true, false}));
}

TEST_F(SheetHostTest, DismissingWhatIsNotShownDoesNothing)
{
    QWidget other;
    host->dismiss(&other);
    host->dismiss(nullptr);
    EXPECT_FALSE(host->isPresenting());
}

TEST(SheetHostMotionTest, KeysThatComeWhileItEntersArrive)
{
    const Theme theme(ColorScheme::light, 1);
    QWidget window;
    window.resize(600, 400);
    auto* host = new SheetHost(theme, &window);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    auto* field = new TextField(theme, u"Field"_s);
    host->present(field, {.onCancel = {}, .firstFocus = field});
    QTest::keyClicks(window.focusWidget(), u"early"_s);
    EXPECT_EQ(field->text(), u"early"_s);
    EXPECT_TRUE(eventually([&] { return window.rect().contains(field->geometry()); }));
}

/// Lets what moves stop where it is, however long the test takes.
void stayOnTheWay(const SheetHost& host)
{
    for (auto* motion : host.findChildren<QVariantAnimation*>())
        motion->pause();
}

TEST(SheetHostMotionTest, CommandsThatComeWhileItLeavesArriveAlsoWhereNothingHadTheKeys)
{
    const Theme theme(ColorScheme::light, 1);
    QWidget window;
    window.resize(600, 400);
    SheetHost host(theme, &window);
    int commands = 0;
    const QShortcut shortcut(QKeySequence(u"Ctrl+N"_s), &window, [&] { ++commands; });
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    ASSERT_EQ(window.focusWidget(), nullptr);
    auto* field = new TextField(theme, u"Field"_s);
    host.present(field, {});
    QTest::keyClick(window.windowHandle(), Qt::Key_N, Qt::ControlModifier);
    EXPECT_EQ(commands, 0);
    host.dismiss(field);
    stayOnTheWay(host);
    QTest::keyClick(window.windowHandle(), Qt::Key_N, Qt::ControlModifier);
    EXPECT_TRUE(host.isVisible()) << "it is still on its way";
    EXPECT_EQ(commands, 1);
}

TEST(SheetHostMotionTest, ClicksThatComeWhileItLeavesArriveBehindIt)
{
    const Theme theme(ColorScheme::light, 1);
    QWidget window;
    window.resize(600, 400);
    Button behind(theme, Button::Kind::secondary, u"Behind"_s, &window);
    behind.setGeometry(20, 20, 100, 30);
    int clicks = 0;
    QObject::connect(&behind, &Button::clicked, [&] { ++clicks; });
    SheetHost host(theme, &window);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    const auto click = [&] {
        QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, behind.geometry().center());
    };
    auto* field = new TextField(theme, u"Field"_s);
    host.present(field, {});
    click();
    EXPECT_EQ(clicks, 0);
    host.dismiss(field);
    stayOnTheWay(host);
    click();
    EXPECT_TRUE(host.isVisible()) << "it is still on its way";
    behind.setFocus();
    QTest::keyClick(&behind, Qt::Key_Tab);
    EXPECT_TRUE(behind.hasFocus()) << "nor is it a stop of Tab any more";
    EXPECT_EQ(clicks, 1);
    host.present(new TextField(theme, u"Field"_s), {});
    click();
    EXPECT_EQ(clicks, 1);
}

} // namespace
} // namespace vellumry::test
