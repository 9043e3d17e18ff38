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

} // namespace
} // namespace vellumry::test
