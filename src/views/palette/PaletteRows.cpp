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

/// How the passwords of a complexity are told apart.
struct PasswordLook {
    QString symbol;
    QString caption;
    QString badge;
};

PasswordLook lookOf(PasswordComplexity complexity)
{
    switch (complexity) {
    case PasswordComplexity::simple:
        return {u"lock.open"_s, u"a-z, 0-9"_s, u"Simple"_s};
    case PasswordComplexity::medium:
        return {u"lock"_s, u"A-z, 0-9, -_@#"_s, u"Medium"_s};
    case PasswordComplexity::strong:
        return {u"lock.shield"_s, u"A-z, 0-9, !@#$%..."_s, u"Strong"_s};
    }
    return {};
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
    using Model = CommandPaletteViewModel;
    const QList<Snippet> results = state.filteredSnippets.first(
        std::min<qsizetype>(state.filteredSnippets.size(), Model::maxDisplayResults));
    const QList<Snippet> today = state.todaySnippets.first(
        std::min<qsizetype>(state.todaySnippets.size(), Model::maxTodayResults));
    const auto resultCount = static_cast<int>(results.size());
    const auto todayCount = static_cast<int>(today.size());
    const auto passwordCount = static_cast<int>(state.passwordResults.size());
    const bool hasQuery = !state.query.isEmpty();
    const int rowsAboveResults = !hasQuery ? 1 + todayCount : state.calculationResult ? 1 : 0;
    itemCount = hasQuery && passwordCount > 0 ? passwordCount : rowsAboveResults + resultCount;

    if (!hasQuery) {
        addHeader(QStringLiteral("Actions"));
        addOpenApp();
        if (!today.isEmpty()) {
            addHeader(QStringLiteral("Today"));
            addSnippets(today, 1, QStringLiteral("today-"), state.justCopiedID,
                        [](const Snippet& snippet) {
                            const auto lastUsedAt = snippet.lastUsedAt();
                            return lastUsedAt ? timeString(*lastUsedAt) : QString();
                        });
        }
    }
    // Passwords and calculation of the last query stand for a moment in a field just emptied.
    if (passwordCount > 0) {
        addHeader(QStringLiteral("Random Password"));
        addPasswords(state.passwordResults);
    }
    if (state.calculationResult) {
        addHeader(QStringLiteral("Calculator"));
        addCalculation(*state.calculationResult);
    }
    if (!results.isEmpty()) {
        addHeader(hasQuery ? QStringLiteral("Results") : QStringLiteral("Most Used"));
        addSnippets(results, rowsAboveResults, {}, state.justCopiedID,
                    [hasQuery, now](const Snippet& snippet) {
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

void PaletteRows::addOpenApp()
{
    rows.append({.kind = PaletteRowKind::openApp,
                 .id = QStringLiteral("open-app-item"),
                 .index = 0,
                 .hoverIndex = openAppHoverIndex,
                 .symbol = QStringLiteral("macwindow"),
                 .title = QStringLiteral("Open Vellumry"),
                 .detail = QStringLiteral("View all snippets"),
                 .badge = QStringLiteral("App")});
}

void PaletteRows::addPasswords(const QList<PasswordResult>& passwords)
{
    int index = 0;
    for (const PasswordResult& result : passwords) {
        const PasswordLook look = lookOf(result.complexity);
        rows.append({.kind = PaletteRowKind::password,
                     .id = u"password-"_s + result.id,
                     .index = index,
                     .hoverIndex = index,
                     .symbol = look.symbol,
                     .title = result.password,
                     .detail = look.caption,
                     .badge = look.badge});
        ++index;
    }
}

void PaletteRows::addCalculation(const CalculationResult& result)
{
    rows.append({.kind = PaletteRowKind::calculator,
                 .id = QStringLiteral("calculator-result"),
                 .index = 0,
                 .hoverIndex = calculatorHoverIndex,
                 .symbol = QStringLiteral("equal"),
                 .title = result.formattedValue,
                 .detail = result.expression + u" ="_s,
                 .trailing = QStringLiteral("Copy result"),
                 .badge = QStringLiteral("Calc")});
}

void PaletteRows::addSnippets(const QList<Snippet>& snippets, int firstIndex,
                              const QString& idPrefix, const std::optional<QString>& copiedID,
                              const std::function<QString(const Snippet&)>& trailingText)
{
    int index = firstIndex;
    for (const Snippet& snippet : snippets) {
        rows.append({.kind = PaletteRowKind::snippet,
                     .id = idPrefix + snippet.id(),
                     .index = index,
                     .hoverIndex = index,
                     .title = snippet.title(),
                     .detail = snippet.collection(),
                     .trailing = trailingText(snippet),
                     .isCopied = copiedID == snippet.id(),
                     .snippet = snippet});
        ++index;
    }
}

} // namespace vellumry
