#include "views/common/AlertCard.h"

#include <QAccessible>
#include <gtest/gtest.h>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;

TEST(AlertCardTest, AnswersAreReadAsTheyAreWritten)
{
    const Theme theme{ColorScheme::light, 1};
    AlertCard card(theme, {.symbol = u"exclamationmark.triangle.fill"_s,
                           .symbolColor = &ColorTokens::draft,
                           .title = u"You have unsaved changes"_s,
                           .message = u"There are 2 snippet draft(s) not saved."_s,
                           .answers = {{.text = u"Save All & Quit"_s,
                                        .kind = Button::Kind::primary,
                                        .action = [] {}}}});
    QAccessibleInterface* button =
        QAccessible::queryAccessibleInterface(card.button(u"Save All & Quit"_s));
    ASSERT_TRUE(button);
    EXPECT_EQ(button->text(QAccessible::Name), u"Save All & Quit"_s);
    EXPECT_TRUE(card.button(u"Save All & Quit"_s)->shortcut().isEmpty())
        << "an ampersand is no key";
}

} // namespace
} // namespace vellumry::test
