#include "views/editor/ViewShortcut.h"

#include "views/common/SheetHost.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <gtest/gtest.h>

namespace vellumry::test {
namespace {

class ViewShortcutTest : public testing::Test {
protected:
    void SetUp() override
    {
        window.resize(300, 200);
        window.show();
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        field.setFocus();
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers)
    {
        QTest::keyClick(window.focusWidget(), key, modifiers);
    }

    Theme theme{ColorScheme::light, 1};
    QWidget window;
    QWidget view{&window};
    QLineEdit field{&window};
    SheetHost sheets{theme, &window};
    int times = 0;
    ViewShortcut* shortcut = new ViewShortcut(
        Qt::Key_S, Qt::ControlModifier, [this] { ++times; }, &view);
};

TEST_F(ViewShortcutTest, ActsWhereverTheFocusIs)
{
    press(Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(times, 1);
    press(Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    press(Qt::Key_S, {});
    press(Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(times, 1);
}

TEST_F(ViewShortcutTest, ComesBeforeAMenu)
{
    int menus = 0;
    QAction action;
    action.setShortcut(Qt::CTRL | Qt::Key_S);
    QObject::connect(&action, &QAction::triggered, &action, [&] { ++menus; });
    window.addAction(&action);
    press(Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(times, 1);
    EXPECT_EQ(menus, 0);

    view.hide();
    press(Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(times, 1);
    EXPECT_EQ(menus, 1) << "without the view it is the menu's";
}

TEST_F(ViewShortcutTest, RestsUnderASheet)
{
    auto* sheet = new QWidget;
    sheet->resize(50, 50);
    int inSheet = 0;
    new ViewShortcut(
        Qt::Key_S, Qt::ControlModifier, [&] { ++inSheet; }, sheet);
    sheets.present(sheet, {});
    press(Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(times, 0);
    EXPECT_EQ(inSheet, 1) << "the sheet's own acts";
    sheets.dismiss(sheet);
}

} // namespace
} // namespace vellumry::test
