#pragma once

#include "storage/MemoryFileSystem.h"
#include "sync/CloudDriveDetectionService.h"

#include <QSet>

namespace vellumry::test {

/// A machine on which cloud drives can be installed, in the home folder of the storage's tests.
class DriveWorld {
public:
    explicit DriveWorld(MemoryFileSystem& files) : fileSystem(files) {}

    void installDropbox() { install(QStringLiteral("dropbox"), QStringLiteral("Dropbox")); }
    void installPCloud() { install(QStringLiteral("pcloud"), QStringLiteral("pCloudDrive")); }

    static QString dropboxFolder() { return QStringLiteral("/home/tester/Dropbox/Apps/Vellumry"); }
    static QString pCloudFolder()
    {
        return QStringLiteral("/home/tester/pCloudDrive/Apps/Vellumry");
    }

private:
    void install(const QString& program, const QString& folder)
    {
        programs.insert(program);
        fileSystem.makeFolder(QStringLiteral("/home/tester/") + folder);
    }

    MemoryFileSystem& fileSystem;
    QSet<QString> programs;

public:
    const CloudDriveDetectionService service{
        {.files = fileSystem,
         .homeFolder = QStringLiteral("/home/tester"),
         .applicationsFolder = QStringLiteral("/Applications"),
         .isOnPath = [this](const QString& name) { return programs.contains(name); }}};
};

} // namespace vellumry::test
