#include "views/palette/PaletteRows.h"

#include "palette/CommandPaletteViewModel.h"

#include <QDateTime>
#include <QLocale>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace vellumry {

namespace {

QString localText(Date date, const QString& format)
{
    const auto sinceEpoch = std::chrono::floor<std::chrono::milliseconds>(date.time_since_epoch());
    return QLocale::c().toString(QDateTime::fromMSecsSinceEpoch(sinceEpoch.count()), format);
}

template <typename Unit>
QString wholeUnits(std::chrono::nanoseconds elapsed, QLatin1StringView suffix)
{
    return QString::number(std::chrono::duration_cast<Unit>(elapsed).count()) + suffix;
}

QString useCount(const Snippet& snippet)
{
    return snippet.usageCount() > 0 ? QString::number(snippet.usageCount()) + u'×' : QString();
}

} // namespace

QString timeString(Date time)
{
    return localText(time, QStringLiteral("h:mm AP"));
}

QString lastUsedString(Date lastUsedAt, Date now)
{
    using namespace std::chrono;
    const nanoseconds elapsed = now - lastUsedAt;
    if (elapsed < minutes(1))
        return QStringLiteral("Just now");
    if (elapsed < hours(1))
        return wholeUnits<minutes>(elapsed, "m ago"_L1);
    if (elapsed < days(1))
        return wholeUnits<hours>(elapsed, "h ago"_L1);
    if (elapsed < days(2))
        return QStringLiteral("Yesterday");
    if (elapsed < days(7))
        return wholeUnits<days>(elapsed, "d ago"_L1);
    return localText(lastUsedAt, QStringLiteral("MMM d"));
}

PaletteRows::PaletteRows(const State& state, Date now)
{
    const QList<Snippet> results = state.filteredSnippets.first(std::min<qsizetype>(
        state.filteredSnippets.size(), CommandPaletteViewModel::maxDisplayResults));
    const bool hasQuery = !state.query.isEmpty();

    if (!hasQuery) {
        addHeader(QStringLiteral("Actions"));
        addRow({.kind = PaletteRowKind::openApp,
                .id = QStringLiteral("open-app-item"),
                .hoverIndex = openAppHoverIndex,
                .title = QStringLiteral("Open Vellumry"),
                .detail = QStringLiteral("View all snippets"),
                .badge = QStringLiteral("App")});

        const QList<Snippet> today = state.todaySnippets.first(std::min<qsizetype>(
            state.todaySnippets.size(), CommandPaletteViewModel::maxTodayResults));
        if (!today.isEmpty()) {
            addHeader(QStringLiteral("Today"));
            addSnippets(today, QStringLiteral("today-"), state.justCopiedID,
                        [](const Snippet& snippet) {
                            const auto lastUsedAt = snippet.lastUsedAt();
                            return lastUsedAt ? timeString(*lastUsedAt) : QString();
                        });
        }
    }

    // The sections of passwords and of the calculator stand here.

    if (!results.isEmpty()) {
        addHeader(hasQuery ? QStringLiteral("Results") : QStringLiteral("Most Used"));
        addSnippets(results, {}, state.justCopiedID, [hasQuery, now](const Snippet& snippet) {
            if (!hasQuery)
                return useCount(snippet);
            const auto lastUsedAt = snippet.lastUsedAt();
            return lastUsedAt ? lastUsedString(*lastUsedAt, now) : QString();
        });
    }
    isEmptyState = hasQuery && rows.isEmpty();
}

int PaletteRows::clampedSelection(int selectedIndex) const
{
    return itemCount > 0 ? std::min(selectedIndex, itemCount - 1) : 0;
}

qsizetype PaletteRows::lineOfIndex(int index) const
{
    const auto line = std::find_if(rows.begin(), rows.end(), [index](const PaletteRow& row) {
        return !row.isHeader() && row.index == index;
    });
    return line == rows.end() ? -1 : line - rows.begin();
}

void PaletteRows::addHeader(const QString& title)
{
    rows.append({.title = title});
}

void PaletteRows::addRow(PaletteRow row)
{
    row.index = itemCount++;
    rows.append(std::move(row));
}

void PaletteRows::addSnippets(const QList<Snippet>& snippets, const QString& idPrefix,
                              const std::optional<QString>& copiedID,
                              const std::function<QString(const Snippet&)>& trailingText)
{
    for (const Snippet& snippet : snippets) {
        addRow({.kind = PaletteRowKind::snippet,
                .id = idPrefix + snippet.id(),
                .hoverIndex = itemCount,
                .title = snippet.title(),
                .detail = snippet.collection(),
                .trailing = trailingText(snippet),
                .isCopied = copiedID == snippet.id(),
                .snippet = snippet});
    }
}

} // namespace vellumry
