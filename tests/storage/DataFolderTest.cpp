#include "storage/DataFolder.h"

#include <gtest/gtest.h>

namespace vellumry {
namespace {

TEST(DataFolder, everyJsonFileButTheMetadataFileIsACollectionFile)
{
    EXPECT_EQ(baseNameOfCollectionFile(QStringLiteral("work.json")), QStringLiteral("work"));
    EXPECT_EQ(baseNameOfCollectionFile(QStringLiteral(".a.b.json")), QStringLiteral(".a.b"));
    EXPECT_EQ(baseNameOfCollectionFile(QStringLiteral("_Metadata.json")),
              QStringLiteral("_Metadata"));
    EXPECT_EQ(baseNameOfCollectionFile(QStringLiteral("vellumry-data.json")),
              QStringLiteral("vellumry-data"));
    for (const char* name : {"_metadata.json", "work.JSON", "work", ".json", "work.json.backup"})
        EXPECT_FALSE(baseNameOfCollectionFile(QLatin1StringView(name))) << name;
}

TEST(DataFolder, filesStandInTheFolderItself)
{
    const QString folder = QStringLiteral("/library");
    EXPECT_EQ(collectionFilePath(folder, QStringLiteral("work")),
              QStringLiteral("/library/work.json"));
    EXPECT_EQ(legacyFilePath(folder), QStringLiteral("/library/vellumry-data.json"));
}

} // namespace
} // namespace vellumry
