#include "library/ImportPreview.h"

#include <QLatin1StringView>

namespace vellumry {

namespace {

struct Row {
    const char* title;
    const char* description;
    const char* symbol;
};

/// In the order of the cases.
constexpr std::array<Row, allConflictResolutionModes.size()> rows{{
    {"Smart Update", "Keep the newer version based on update time", "clock.arrow.circlepath"},
    {"Restore from Backup", "Replace all conflicts with imported data", "arrow.down.doc.fill"},
    {"Skip Conflicts", "Keep existing data, only import non-conflicting items",
     "arrow.uturn.right"},
    {"Keep Both", "Keep both versions, imported items will have \"(imported)\" suffix",
     "doc.on.doc.fill"},
}};

const Row& row(ConflictResolutionMode mode)
{
    return rows[static_cast<size_t>(mode)];
}

} // namespace

QString title(ConflictResolutionMode mode)
{
    return QLatin1StringView(row(mode).title);
}

QString description(ConflictResolutionMode mode)
{
    return QLatin1StringView(row(mode).description);
}

QString symbol(ConflictResolutionMode mode)
{
    return QLatin1StringView(row(mode).symbol);
}

SymbolText ImportPreview::type(const ImportConflict& conflict)
{
    if (conflict.type == ConflictType::collection)
        return {QStringLiteral("Collection"), QStringLiteral("folder.fill")};
    return {QStringLiteral("Snippet"), QStringLiteral("doc.text")};
}

QString ImportPreview::status(const ImportConflict& conflict)
{
    if (conflict.importedUpdatedAt == conflict.localUpdatedAt)
        return QStringLiteral("Same");
    return conflict.importedUpdatedAt > conflict.localUpdatedAt ? QStringLiteral("Import newer")
                                                                : QStringLiteral("Local newer");
}

SymbolText ImportPreview::decision(const ImportConflict& conflict, ConflictResolutionMode mode)
{
    SymbolText useImported{QStringLiteral("Use Imported"),
                           QStringLiteral("arrow.down.circle.fill")};
    SymbolText keepLocal{QStringLiteral("Keep Local"), QStringLiteral("checkmark.circle.fill")};
    switch (mode) {
    case ConflictResolutionMode::smartUpdate:
        return conflict.importedUpdatedAt > conflict.localUpdatedAt ? useImported : keepLocal;
    case ConflictResolutionMode::restoreFromBackup:
        return useImported;
    case ConflictResolutionMode::skipConflicts:
        return keepLocal;
    case ConflictResolutionMode::keepBoth:
        return {QStringLiteral("Keep Both"), QStringLiteral("doc.on.doc.fill")};
    }
    Q_UNREACHABLE();
}

} // namespace vellumry
