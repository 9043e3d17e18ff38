#include "storage/DataFolder.h"

#include "models/CollectionFileName.h"

#include <QStringBuilder>

namespace vellumry {

QString legacyFilePath(const QString& folder)
{
    return folder % u"/vellumry-data.json";
}

QString collectionFilePath(const QString& folder, const QString& baseName)
{
    return folder % u'/' % baseName % u".json";
}

std::optional<QString> baseNameOfCollectionFile(const QString& fileName)
{
    auto baseName = jsonFileBaseName(fileName);
    return baseName == QLatin1StringView("_metadata") ? std::nullopt : baseName;
}

} // namespace vellumry
