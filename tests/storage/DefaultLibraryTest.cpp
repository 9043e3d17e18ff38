#include "storage/DefaultLibrary.h"

#include "support/ManualClock.h"

#include <gtest/gtest.h>

namespace vellumry::test {

namespace {

TEST(DefaultLibrary, hasTheCollectionsAndSnippetsOfTheResourceWithFreshIds)
{
    const QString red = QStringLiteral("#FF0000");
    const DefaultSnippetsContainer resource{
        {{.name = QStringLiteral("A"),
          .color = red,
          .snippets = {{QStringLiteral("one"), QStringLiteral("1")},
                       {QStringLiteral("two"), QStringLiteral("2")}}},
         {.name = QStringLiteral("B"), .color = red, .snippets = {}}}};
    const ManualClock clock;
    const VellumryData library = defaultLibrary(resource, clock);
    EXPECT_EQ(library.version, QStringLiteral("3.0"));
    EXPECT_EQ(library.lastModified, clock.now());
    EXPECT_FALSE(library.settings);
    ASSERT_EQ(library.data.collections.size(), 2);
    EXPECT_EQ(library.data.collections[0].name, QStringLiteral("A"));
    EXPECT_EQ(library.data.collections[1].color, red);
    EXPECT_EQ(library.data.categoryColors,
              (QMap<QString, QString>{{QStringLiteral("A"), red}, {QStringLiteral("B"), red}}));
    ASSERT_EQ(library.data.snippets.size(), 2);
    const Snippet& two = library.data.snippets[1];
    EXPECT_EQ(two.title(), QStringLiteral("two"));
    EXPECT_EQ(two.content(), QStringLiteral("2"));
    EXPECT_EQ(two.collection(), QStringLiteral("A"));
    EXPECT_EQ(two.subtitle(), QString());
    EXPECT_EQ(two.createdAt(), clock.now());
    EXPECT_EQ(two.updatedAt(), clock.now());
    EXPECT_EQ(two.usageCount(), 0);
    EXPECT_FALSE(two.lastUsedAt());

    const VellumryData another = defaultLibrary(resource, clock);
    EXPECT_NE(library.data.collections[0].id, another.data.collections[0].id);
    EXPECT_NE(two.id(), another.data.snippets[1].id());
    EXPECT_NE(two.id(), library.data.snippets[0].id());
}

} // namespace

} // namespace vellumry::test
