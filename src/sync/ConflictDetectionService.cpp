#include "sync/ConflictDetectionService.h"

#include "core/Log.h"
#include "core/Text.h"
#include "models/CollectionFileName.h"

#include <QStringBuilder>

#include <algorithm>
#include <functional>
#include <map>
#include <utility>

namespace vellumry {

namespace {

void log(const QString& message)
{
    vellumry::log(u"ConflictDetectionService", message);
}

} // namespace

ConflictDetectionService::ConflictDetectionService(const Dependencies& dependencies)
    : with(dependencies)
{
}

ConflictDetectionService& ConflictDetectionService::shared()
{
    static ConflictDetectionService service(
        {.locations = StorageLocationManager::shared(), .files = FileSystem::local()});
    return service;
}

/// Compiled once. The last three ask for a base name that itself ends in ".json", so that in
/// practice it is the first that catches conflict copies.
const QList<ConflictDetectionService::ConflictPattern>& ConflictDetectionService::conflictPatterns()
{
    static const QList<ConflictPattern> patterns = [] {
        using Type = CloudDriveType;
        const std::pair<const char*, Type> texts[] = {
            {R"(\(conflicted copy \d{4}-\d{2}-\d{2}\))", Type::dropbox},
            {R"(( \d+|\(from .+\))(?=\.json$))", Type::iCloudDrive},
            {R"(\(\d+\)(?=\.json$))", Type::googleDrive},
            {R"(-[A-Za-z0-9]+'?s?[A-Za-z0-9 ]*(?=\.json$))", Type::oneDrive}};
        QList<ConflictPattern> valid;
        for (const auto& [text, type] : texts) {
            const QRegularExpression regex(QLatin1StringView(text),
                                           QRegularExpression::CaseInsensitiveOption |
                                               QRegularExpression::UseUnicodePropertiesOption);
            if (regex.isValid())
                valid.append({regex, type});
        }
        return valid;
    }();
    return patterns;
}

QList<ConflictFile> ConflictDetectionService::detectConflicts(const QString& folder) const
{
    if (!with.files.exists(folder))
        return {};
    QStringList names;
    try {
        names = with.files.list(folder);
    } catch (const FileError& failure) {
        log(u"检测冲突失败 - " % failure.description());
        return {};
    }
    names.removeIf([](const QString& name) { return name.startsWith(u'.'); });

    // The names that fit no pattern; also those of backups, which are no copies either.
    QSet<QString> normalFileNames;
    QStringList candidates;
    for (const QString& name : std::as_const(names)) {
        const auto baseName = jsonFileBaseName(name);
        if (!baseName)
            continue;
        const bool fits = std::any_of(conflictPatterns().cbegin(), conflictPatterns().cend(),
                                      [&](const ConflictPattern& pattern) {
                                          return pattern.regex.match(*baseName).hasMatch();
                                      });
        if (!fits)
            normalFileNames.insert(*baseName);
        else if (!name.contains(QLatin1StringView(".backup")))
            candidates.append(name);
    }

    std::multimap<Date, ConflictFile, std::greater<>> newestFirst; // those of one date as listed
    for (const QString& name : std::as_const(candidates)) {
        // A folder is no copy of a file, whatever its name: it could not be removed as one, and
        // would stand in the way of the copies behind it.
        if (with.files.isFolder(folder % u'/' % name))
            continue;
        if (const auto conflict =
                checkConflictPatterns(folder % u'/' % name, name, normalFileNames))
            newestFirst.emplace(conflict->modifiedDate, *conflict);
    }
    QList<ConflictFile> conflicts;
    for (const auto& [date, conflict] : newestFirst)
        conflicts.append(conflict);
    return conflicts;
}

std::optional<ConflictFile>
ConflictDetectionService::checkConflictPatterns(const QString& path, const QString& fileName,
                                                const QSet<QString>& normalFileNames) const
{
    const QString baseName = jsonFileBaseName(fileName).value_or(QString());
    for (const ConflictPattern& pattern : conflictPatterns()) {
        const QRegularExpressionMatch match = pattern.regex.match(baseName);
        if (!match.hasMatch())
            continue;
        // Every occurrence goes, and only the ends are trimmed.
        QString original = baseName;
        original.remove(match.captured());
        original = trimmedHorizontally(original).toString();
        try {
            const FileStamp attributes = with.files.attributes(path);
            return ConflictFile{.id = QUuid::createUuid(),
                                .url = path,
                                .cloudDriveType = pattern.type,
                                .modifiedDate = attributes.modified,
                                .fileSize = attributes.size,
                                .originalFileName = normalFileNames.contains(original)
                                                        ? std::optional(original)
                                                        : std::nullopt};
        } catch (const FileError& failure) {
            log(u"获取文件属性失败 - " % failure.description());
        }
    }
    return std::nullopt;
}

void ConflictDetectionService::deleteAllConflicts() const
{
    for (const ConflictFile& conflict : detectConflicts(with.locations.currentLocation())) {
        with.files.remove(conflict.url);
        log(u"已删除冲突文件 - " % conflict.url.sliced(conflict.url.lastIndexOf(u'/') + 1));
    }
}

} // namespace vellumry
