#include "views/common/PopupMenu.h"

#include <QAccessible>
#include <QTest>
#include <gtest/gtest.h>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;

class PopupMenuTest : public testing::Test {
protected:
    /// Shows the items in a menu.
    void addAll(const QString& text)
    {
        const auto note = [this] { ++calls; };
        menu.addItem(u"pencil"_s, text, note);
        menu.addDestructiveItem(u"trash"_s, text, note);
        menu.addSwatch(Qt::red, text, note);
        menu.addChoice(Qt::red, text, true, note);
        menu.addSubmenu(u"paintbrush"_s, text)->addItem({}, u"inner"_s, note);
        menu.popup({0, 0});
    }

    Theme theme{ColorScheme::light, 1};
    PopupMenu menu{theme};
    int calls = 0;
};

TEST_F(PopupMenuTest, TextsAreShownAsTheyStand)
{
    addAll(u"R&D && more"_s);
    QAccessibleInterface* access = QAccessible::queryAccessibleInterface(&menu);
    for (int i = 0; i < access->childCount(); ++i)
        EXPECT_EQ(access->child(i)->text(QAccessible::Name), u"R&D && more") << i;
    QTest::keyClick(&menu, Qt::Key_D);
    QTest::keyClick(&menu, Qt::Key_Space);
    EXPECT_EQ(calls, 0);
    EXPECT_FALSE(menu.activeAction()) << "no key of an item";
}

TEST_F(PopupMenuTest, AnAmpersandTakesItsOwnRoom)
{
    const QString name = u"a name that is longer than the least one "_s;
    const auto widthOf = [this](const QString& text) {
        PopupMenu each(theme);
        return each.actionGeometry(each.addItem({}, text, [] {})).width();
    };
    const QFontMetricsF metrics(theme.font(TextStyle::body));
    EXPECT_NEAR(widthOf(name + u"&D"_s) - widthOf(name + u"D"_s), metrics.horizontalAdvance(u'&'),
                1);
}

TEST_F(PopupMenuTest, TheChosenOneIsToldToScreenReaders)
{
    QAction* work = menu.addChoice(Qt::red, u"Work"_s, true, [this] { ++calls; });
    QAction* home = menu.addChoice(Qt::blue, u"Home"_s, false, [this] { ++calls; });
    menu.addSeparator();
    menu.addItem({}, u"+"_s, [this] { ++calls; });
    menu.popup({0, 0});
    QAccessibleInterface* access = QAccessible::queryAccessibleInterface(&menu);
    const auto state = [&](int item) { return access->child(item)->state(); };
    EXPECT_TRUE(state(0).checkable);
    EXPECT_TRUE(state(0).checked);
    EXPECT_TRUE(state(1).checkable);
    EXPECT_FALSE(state(1).checked);
    EXPECT_FALSE(state(3).checkable);
    work->trigger();
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(work->isChecked()) << "it is chosen still";
    home->trigger();
    EXPECT_EQ(calls, 2);
    EXPECT_TRUE(home->isChecked());
    EXPECT_FALSE(work->isChecked()) << "one at a time";
}

} // namespace
} // namespace vellumry::test
