#include "models/Collection.h"

#include "models/CollectionFileData.h"
#include "models/MetadataFileData.h"
#include "models/VellumryData.h"

#include <gtest/gtest.h>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;

TEST(Collection, IsTheSameByIdAlone)
{
    const Collection collection{u"1"_s, u"Work"_s, 3, {}};
    const Collection renamed{u"1"_s, u"Play"_s, 4, Date(std::chrono::seconds(1))};
    const Collection other{u"2"_s, u"Work"_s, 3, {}};
    EXPECT_EQ(collection, renamed);
    EXPECT_EQ(qHash(collection), qHash(renamed));
    EXPECT_FALSE(collection == other);
}

TEST(SyncCollection, IsTheSameByAllFields)
{
    const SyncCollection head{u"1"_s, u"Work"_s, u"blue"_s, {}};
    SyncCollection other = head;
    EXPECT_EQ(head, other);
    other.name = u"Play"_s;
    EXPECT_FALSE(head == other);
    other = head;
    other.color.reset();
    EXPECT_FALSE(head == other);
    other = head;
    other.createdAt += std::chrono::nanoseconds(1);
    EXPECT_FALSE(head == other);
}

TEST(FormatVersions, DifferOnPurpose)
{
    EXPECT_EQ(CollectionFileData::currentVersion, u"1.0");
    EXPECT_EQ(MetadataFileData::currentVersion, u"3.1");
    EXPECT_EQ(VellumryData::currentVersion, u"3.0");
}

} // namespace
} // namespace vellumry
