#include "palette/CommandPaletteViewModel.h"

#include "calculators/MathCalculatorService.h"
#include "calculators/UnitConversionService.h"
#include "core/Log.h"
#include "core/Text.h"
#include "notifications/NotificationCenter.h"
#include "palette/ClipboardServiceProtocol.h"
#include "palette/RandomPasswordService.h"
#include "palette/SearchServiceProtocol.h"
#include "palette/SnippetVariableService.h"
#include "platform/RandomSource.h"
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
    if (queryText.isEmpty())
        return 1 + todayRowCount() + resultRows;
    if (!passwords.isEmpty())
        return static_cast<int>(passwords.size());
    return calculation ? resultRows + 1 : resultRows;
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
    detectAndGeneratePassword();
    if (passwords.isEmpty()) {
        detectAndCalculate();
        searchSnippets();
    } else {
        filtered = {};
        today = {};
        calculation.reset();
    }
    Q_EMIT resultsChanged();
}

void CommandPaletteViewModel::detectAndGeneratePassword()
{
    passwords = {};
    const auto length = services.passwordService.extractRandomCommand(queryText);
    if (!length)
        return;
    try {
        passwords = services.passwordService.generate(*length);
    } catch (const RandomSourceError& error) {
        log(u"RandomPasswordService", error.description());
    }
}

void CommandPaletteViewModel::detectAndCalculate()
{
    calculation = UnitConversionService::convert(queryText);
    if (calculation)
        return;
    if (const auto expression = MathCalculatorService::extractMathExpression(queryText))
        calculation = MathCalculatorService::calculate(*expression);
}

void CommandPaletteViewModel::searchSnippets()
{
    if (queryText.isEmpty()) {
        filtered = {}; // lets go of the list that the order is about to update
        filtered = recencyOrder.sorted(allSnippets);
        today = filterTodaySnippets(filtered);
    } else {
        filtered = services.searchService.search(searchText(queryText), allSnippets);
        today = {};
    }
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
    if (calculation && selection == 0) {
        copyCalculatorResult();
        return;
    }
    if (!passwords.isEmpty()) {
        if (selection >= 0 && selection < passwords.size())
            copyPasswordResult(passwords[selection]);
        return;
    }
    const int rowsAbove = calculation ? 1 : 0;
    const auto snippet = queryText.isEmpty() ? snippetAtEmptyQuery(selection)
                                             : filteredSnippet(selection - rowsAbove);
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
    // With a query the index counts through the results alone, also below a calculator row.
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

void CommandPaletteViewModel::copyCalculatorResult()
{
    if (!calculation)
        return;
    const QString text = calculation->formattedValue;
    services.clipboardService.copy(text);
    Q_EMIT services.notifications.quickSearchShowToast(text + QStringLiteral(" Copied"));
    onDismiss();
}

void CommandPaletteViewModel::copyPasswordResult(const PasswordResult& result)
{
    services.clipboardService.copySecret(result.password);
    Q_EMIT services.notifications.quickSearchShowToast(QStringLiteral("Password Copied"));
    onDismiss();
}

void CommandPaletteViewModel::dismiss()
{
    onDismiss();
}

} // namespace vellumry
