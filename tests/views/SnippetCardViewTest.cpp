#include "views/list/SnippetCardView.h"

#include "settings/CategoryColorService.h"
#include "support/ManualClock.h"
#include "support/MemoryPreferences.h"
#include "views/common/CollectionColors.h"

#include <gtest/gtest.h>

namespace vellumry::test {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

QString ago(std::chrono::seconds elapsed)
{
    const Date now = ManualClock().now();
    return SnippetCardView::relativeTime(now - elapsed, now);
}

TEST(SnippetCardViewTest, TellsTheTimeInItsOwnWords)
{
    EXPECT_EQ(ago(-100s), u"just now"_s); // a clock that was set back
    EXPECT_EQ(ago(0s), u"just now"_s);
    EXPECT_EQ(ago(59s), u"just now"_s);
    EXPECT_EQ(ago(60s), u"1 min"_s);
    EXPECT_EQ(ago(119s), u"1 min"_s);
    EXPECT_EQ(ago(3599s), u"59 min"_s);
    EXPECT_EQ(ago(3600s), u"1 hr"_s);
    EXPECT_EQ(ago(7199s), u"1 hr"_s);
    EXPECT_EQ(ago(7200s), u"2 hrs"_s);
    EXPECT_EQ(ago(86399s), u"23 hrs"_s);
    EXPECT_EQ(ago(86400s), u"yesterday"_s);
    EXPECT_EQ(ago(172799s), u"yesterday"_s);
    EXPECT_EQ(ago(172800s), u"2 days"_s);
    EXPECT_EQ(ago(604799s), u"6 days"_s);
    EXPECT_EQ(ago(604800s), u"last week"_s);
    EXPECT_EQ(ago(1209600s), u"2 weeks"_s);
    EXPECT_EQ(ago(2591999s), u"4 weeks"_s);
    EXPECT_EQ(ago(2592000s), u"last month"_s);
    EXPECT_EQ(ago(5184000s), u"2 months"_s);
    EXPECT_EQ(ago(31535999s), u"12 months"_s);
    EXPECT_EQ(ago(31536000s), u"last year"_s);
    EXPECT_EQ(ago(63072000s), u"2 years"_s);
}

TEST(SnippetCardViewTest, DescribesASnippetInWords)
{
    MemoryPreferences preferences;
    CategoryColorService service(preferences);
    const CollectionColors colors(service);
    const Theme theme(ColorScheme::light, 1);
    const ManualClock clock;
    const SnippetCardView cards(theme, colors, clock);
    Snippet snippet;
    snippet.setTitle(u"Two\nlines"_s);
    snippet.setUpdatedAt(clock.now() - 2h);
    EXPECT_EQ(cards.description(snippet, false), u"Two lines, 2 hrs"_s);
    snippet.setSubtitle(u"under it"_s);
    snippet.setCollection(u"Shell"_s);
    EXPECT_EQ(cards.description(snippet, true), u"Two lines, under it, Shell, 2 hrs, unsaved"_s);
}

TEST(SnippetCardViewTest, GrowsWithTheText)
{
    MemoryPreferences preferences;
    CategoryColorService service(preferences);
    const CollectionColors colors(service);
    const ManualClock clock;
    Theme theme(ColorScheme::light, 1);
    const SnippetCardView cards(theme, colors, clock);
    const int before = cards.height(true);
    EXPECT_GT(before, cards.height(false));
    theme.setTextScale(1.6);
    EXPECT_GT(cards.height(true), before);
}

} // namespace
} // namespace vellumry::test
