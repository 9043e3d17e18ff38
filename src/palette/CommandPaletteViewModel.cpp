#include "palette/CommandPaletteViewModel.h"

#include "core/Text.h"
#include "notifications/NotificationCenter.h"
#include "palette/ClipboardServiceProtocol.h"
#include "palette/SearchServiceProtocol.h"
#include "palette/SnippetVariableService.h"
#include "storage/StorageServiceProtocol.h"

#include <QDateTime>

#include <algorithm>
#include <utility>

namespace vellumry {

namespace {

constexpr std::chrono::milliseconds debounceInterval{50};

Date fromLocal(const QDateTime& time)
{
    return Date(std::chrono::milliseconds(time.toMSecsSinceEpoch()));
}

/// The text to search snippets for. A final "=" asks for a calculation and is not searched.
QString searchText(const QString& query)
{
    if (!query.endsWith(u'='))
        return query;
    return trimmedHorizontally(QStringView(query).chopped(1)).toString();
}

} // namespace

CommandPaletteViewModel::CommandPaletteViewModel(const Dependencies& dependencies,
                                                 std::function<void(const Snippet&)> selectCallback,
                                                 std::function<void()> dismissCallback,
                                                 QObject* parent)
    : QObject(parent), services(dependencies), onSelect(std::move(selectCallback)),
      onDismiss(std::move(dismissCallback)), queryDebounce(setupBindings())
{
}

CommandPaletteViewModel::~CommandPaletteViewModel() = default;

Debouncer CommandPaletteViewModel::setupBindings()
{
    return Debouncer(services.scheduler, debounceInterval, this, [this] {
        performSearch();
        setSelectedIndex(0);
    });
}

void CommandPaletteViewModel::setQuery(const QString& text)
{
    const bool isChanged = text != queryText;
    queryText = text;
    queryDebounce.trigger();
    if (isChanged)
        Q_EMIT queryChanged();
}

void CommandPaletteViewModel::setSelectedIndex(int index)
{
    if (index == selection)
        return;
    selection = index;
    Q_EMIT selectedIndexChanged();
}

int CommandPaletteViewModel::todayRowCount() const
{
    return static_cast<int>(std::min<qsizetype>(today.size(), maxTodayResults));
}

int CommandPaletteViewModel::totalItemCount() const
{
    const int resultRows =
        static_cast<int>(std::min<qsizetype>(filtered.size(), maxDisplayResults));
    return queryText.isEmpty() ? 1 + todayRowCount() + resultRows : resultRows;
}

void CommandPaletteViewModel::onAppear()
{
    allSnippets = services.storageService.loadSnippets();
    performSearch();
    setQuery({});
    setSelectedIndex(0);
    justCopied.reset();
}

void CommandPaletteViewModel::performSearch()
{
    // Passwords take their turn here, first, and leave room for nothing else; then unit
    // conversion, then arithmetic. Snippets are searched beside a calculation.
    if (queryText.isEmpty()) {
        filtered = {}; // lets go of the list that the order is about to update
        filtered = recencyOrder.sorted(allSnippets);
        today = filterTodaySnippets(filtered);
    } else {
        filtered = services.searchService.search(searchText(queryText), allSnippets);
        today = {};
    }
    Q_EMIT resultsChanged();
}

QList<Snippet>
CommandPaletteViewModel::filterTodaySnippets(const QList<Snippet>& mostRecentFirst) const
{
    using namespace std::chrono;
    const auto now = duration_cast<milliseconds>(services.clock.now().time_since_epoch());
    const QDate day = QDateTime::fromMSecsSinceEpoch(now.count()).date();
    const Date start = fromLocal(day.startOfDay());
    const Date end = fromLocal(day.addDays(1).startOfDay());

    QList<Snippet> result;
    for (const Snippet& snippet : mostRecentFirst) {
        const auto lastUsedAt = snippet.lastUsedAt();
        if (!lastUsedAt || *lastUsedAt < start)
            break;
        if (*lastUsedAt < end)
            result.append(snippet);
    }
    return result;
}

void CommandPaletteViewModel::moveSelectionUp()
{
    if (selection >= 1)
        setSelectedIndex(selection - 1);
}

void CommandPaletteViewModel::moveSelectionDown()
{
    if (selection < totalItemCount() - 1)
        setSelectedIndex(selection + 1);
}

void CommandPaletteViewModel::selectCurrentItem()
{
    if (queryText.isEmpty() && selection == 0) {
        Q_EMIT services.notifications.openMainWindow();
        onDismiss();
        return;
    }
    // The calculator's row takes its turn here, then the passwords' rows.
    const auto snippet =
        queryText.isEmpty() ? snippetAtEmptyQuery(selection) : filteredSnippet(selection);
    if (snippet)
        copyAndDismiss(*snippet);
}

void CommandPaletteViewModel::openCurrentItemInApp()
{
    if (queryText.isEmpty() && selection == 0) {
        Q_EMIT services.notifications.openMainWindow();
        onDismiss();
        return;
    }
    // With a query the index counts through the results alone, whatever row stands above them.
    const auto snippet =
        queryText.isEmpty() ? snippetAtEmptyQuery(selection) : filteredSnippet(selection);
    if (!snippet)
        return;
    Q_EMIT services.notifications.openSnippetInApp(snippet->id());
    onDismiss();
}

std::optional<Snippet> CommandPaletteViewModel::snippetAtEmptyQuery(int index) const
{
    const int todayRows = todayRowCount();
    if (index >= 1 && index <= todayRows)
        return today[index - 1];
    return filteredSnippet(index - (todayRows + 1));
}

std::optional<Snippet> CommandPaletteViewModel::filteredSnippet(int index) const
{
    if (index < 0 || index >= filtered.size())
        return std::nullopt;
    return filtered[index];
}

void CommandPaletteViewModel::copyAndDismiss(const Snippet& snippet)
{
    services.clipboardService.copy(
        SnippetVariableService::shared().resolve(snippet.content(), snippet.variables()));
    services.storageService.incrementUsage(snippet.id(), services.clock);
    Q_EMIT services.notifications.snippetDataChanged();
    onSelect(snippet);
    Q_EMIT services.notifications.quickSearchShowToast(QStringLiteral("Copied to Clipboard"));
    onDismiss();
}

void CommandPaletteViewModel::dismiss()
{
    onDismiss();
}

} // namespace vellumry
