#include "sync/ConflictMergeStrategy.h"

#include <QLatin1StringView>

namespace vellumry {

namespace {

struct Row {
    const char* rawValue;
    const char* title;
    const char* description;
    const char* symbol;
};

/// In the order of the cases.
constexpr std::array<Row, allConflictMergeStrategies.size()> rows{{
    {"useLocal", "Keep Local", "Discard the conflict file and keep your current data",
     "internaldrive"},
    {"useRemote", "Use Conflict Version", "Replace your data with the conflict file's data",
     "cloud"},
    {"smartMerge", "Smart Merge", "Merge both versions, keeping the newest changes", "sparkles"},
    {"keepBoth", "Keep Both", "Keep all snippets from both versions (may create duplicates)",
     "doc.on.doc"},
}};

const Row& row(ConflictMergeStrategy strategy)
{
    return rows[static_cast<size_t>(strategy)];
}

} // namespace

QString rawValue(ConflictMergeStrategy strategy)
{
    return QLatin1StringView(row(strategy).rawValue);
}

QString titleOf(ConflictMergeStrategy strategy)
{
    return QLatin1StringView(row(strategy).title);
}

QString description(ConflictMergeStrategy strategy)
{
    return QLatin1StringView(row(strategy).description);
}

QString symbol(ConflictMergeStrategy strategy)
{
    return QLatin1StringView(row(strategy).symbol);
}

QString badge(ConflictMergeStrategy strategy)
{
    return strategy == defaultConflictMergeStrategy ? QStringLiteral("Recommended") : QString();
}

} // namespace vellumry
