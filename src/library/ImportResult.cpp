#include "library/ImportResult.h"

namespace vellumry {

ImportResult ImportResult::success(qsizetype count)
{
    ImportResult result;
    result.imported = count;
    return result;
}

ImportResult ImportResult::failure(const QString& message)
{
    ImportResult result;
    result.reason = message;
    return result;
}

QString ImportResult::text() const
{
    if (!imported)
        return QStringLiteral("Import failed: ") + reason;
    if (*imported == 0)
        return QStringLiteral("No new snippets");
    if (*imported == 1)
        return QStringLiteral("Imported 1 snippet");
    return QStringLiteral("Imported %1 snippets").arg(*imported);
}

QString ImportResult::symbol() const
{
    return imported ? QStringLiteral("checkmark") : QStringLiteral("xmark");
}

} // namespace vellumry
