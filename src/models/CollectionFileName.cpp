#include "models/CollectionFileName.h"

namespace vellumry {

QString collectionFileBaseName(const QString& name)
{
    static constexpr QStringView forbidden = u"/\\:*?\"<>|";
    QString base = name.toLower();
    base.replace(u' ', u'-');
    base.removeIf([](QChar c) { return forbidden.contains(c); });
    while (base.contains(QLatin1StringView("--")))
        base.replace(QLatin1StringView("--"), QLatin1StringView("-"));
    if (base.startsWith(u'-'))
        base.remove(0, 1);
    if (base.endsWith(u'-'))
        base.chop(1);
    return base.isEmpty() ? QStringLiteral("collection") : base;
}

QString generateUniqueFileName(const QString& baseName, const QSet<QString>& existingNames)
{
    QString candidate = baseName;
    for (int suffix = 1; existingNames.contains(candidate); ++suffix)
        candidate = baseName + u'-' + QString::number(suffix);
    return candidate;
}

std::optional<QString> jsonFileBaseName(const QString& fileName)
{
    const qsizetype dot = fileName.lastIndexOf(u'.');
    if (dot <= 0 || QStringView(fileName).sliced(dot + 1) != QLatin1StringView("json"))
        return std::nullopt;
    return fileName.first(dot);
}

} // namespace vellumry
