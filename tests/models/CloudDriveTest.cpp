#include "models/DetectedCloudDrive.h"

#include <QStringList>
#include <gtest/gtest.h>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;

TEST(CloudDriveType, HasItsNameAsRawValueInTheOrderOfTheCases)
{
    QStringList names;
    for (const CloudDriveType type : allCloudDriveTypes)
        names.append(rawValue(type));
    EXPECT_EQ(names, (QStringList{u"Dropbox"_s, u"iCloud Drive"_s, u"Google Drive"_s, u"OneDrive"_s,
                                  u"pCloud"_s}));
}

QString shortPathOf(const QString& syncFolder, const QString& home)
{
    const DetectedCloudDrive drive{.id = {},
                                   .type = CloudDriveType::dropbox,
                                   .syncFolderPath = syncFolder,
                                   .isAvailable = true};
    return drive.shortPath(home);
}

TEST(DetectedCloudDrive, ShowsATildeForTheHomeFolder)
{
    EXPECT_EQ(shortPathOf(u"/Users/a/Dropbox"_s, u"/Users/a"_s), u"~/Dropbox/Apps/Vellumry"_s);
    EXPECT_EQ(shortPathOf(u"/Volumes/x"_s, u"/Users/a"_s), u"/Volumes/x/Apps/Vellumry"_s);
    EXPECT_EQ(shortPathOf(u"/Users/a"_s, u"/Users/a"_s), u"~/Apps/Vellumry"_s);
    EXPECT_EQ(shortPathOf(u"/Users/a/Dropbox"_s, QString()), u"/Users/a/Dropbox/Apps/Vellumry"_s);
}

TEST(DetectedCloudDrive, ComparesTheHomeFolderByItsTextAlone)
{
    EXPECT_EQ(shortPathOf(u"/Users/anna/Dropbox"_s, u"/Users/a"_s),
              u"~nna/Dropbox/Apps/Vellumry"_s);
}

TEST(DetectedCloudDrive, KnowsTheProgramsFolder)
{
    const DetectedCloudDrive drive{
        .id = {}, .type = CloudDriveType::pCloud, .syncFolderPath = u"/p"_s, .isAvailable = true};
    EXPECT_EQ(drive.programFolderPath(), u"/p/Apps/Vellumry"_s);
}

} // namespace
} // namespace vellumry
