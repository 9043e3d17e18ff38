#include "views/common/AccessibleRole.h"

#include "views/common/Button.h"

#include <QAccessible>
#include <QSignalSpy>
#include <gtest/gtest.h>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;

TEST(AccessibleRoleTest, AnAreaIsWhatItIsSaidToBe)
{
    QWidget area;
    setAccessibleRole(area, QAccessible::Heading);
    area.setAccessibleName(u"All Snippets"_s);
    QAccessibleInterface* heading = QAccessible::queryAccessibleInterface(&area);
    ASSERT_NE(heading, nullptr);
    EXPECT_EQ(heading->role(), QAccessible::Heading);
    EXPECT_EQ(heading->text(QAccessible::Name), u"All Snippets"_s);
    EXPECT_FALSE(heading->state().modal);
}

TEST(AccessibleRoleTest, TogglingACheckableButtonClicksIt)
{
    const Theme theme(ColorScheme::light, 1);
    for (const bool isOneOfSeveral : {false, true}) {
        Button button(theme, Button::Kind::ghost, u"Dark"_s);
        button.setCheckable(true);
        button.setAutoExclusive(isOneOfSeveral);
        const QSignalSpy clicks(&button, &Button::clicked);
        QAccessibleInterface* choice = QAccessible::queryAccessibleInterface(&button);
        ASSERT_NE(choice, nullptr);
        EXPECT_EQ(choice->role(),
                  isOneOfSeveral ? QAccessible::RadioButton : QAccessible::CheckBox);
        EXPECT_EQ(choice->text(QAccessible::Name), u"Dark"_s);
        EXPECT_TRUE(choice->state().checkable);
        EXPECT_FALSE(choice->state().checked);
        choice->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
        EXPECT_EQ(clicks.size(), 1);
        EXPECT_TRUE(choice->state().checked);
    }
}

} // namespace
} // namespace vellumry::test
