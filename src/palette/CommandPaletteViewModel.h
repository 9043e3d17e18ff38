#pragma once

#include "calculators/CalculationResult.h"
#include "core/Scheduler.h"
#include "models/Snippet.h"
#include "palette/PasswordResult.h"
#include "palette/RecencyOrder.h"

#include <QList>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>

namespace vellumry {

class ClipboardServiceProtocol;
class NotificationCenter;
class RandomPasswordService;
class SearchServiceProtocol;
class StorageServiceProtocol;

/// The logic of the command palette: what the typed text means, which rows there are, which one is
/// selected, and what a chosen row does. The view renders these values and forwards keys.
/// Main thread only.
///
/// The rows are one numbered sequence. With an empty query: row 0 opens the main window, then come
/// at most maxTodayResults of todaySnippets, then at most maxDisplayResults of filteredSnippets.
/// With a query: the passwords alone, if there are any; otherwise the calculator row, if there is
/// one, then at most maxDisplayResults of filteredSnippets.
class CommandPaletteViewModel : public QObject {
    Q_OBJECT

public:
    static constexpr int maxDisplayResults = 10;
    static constexpr int maxTodayResults = 5;

    /// What the model works with; all outlive it.
    struct Dependencies {
        StorageServiceProtocol& storageService;
        SearchServiceProtocol& searchService;
        ClipboardServiceProtocol& clipboardService;
        const RandomPasswordService& passwordService;
        NotificationCenter& notifications;
        Scheduler& scheduler;
        const Clock& clock;
    };

    /// `onSelect` is called with each copied snippet, `onDismiss` asks the owner to close the
    /// panel; both must be callable. Loads nothing.
    CommandPaletteViewModel(const Dependencies& dependencies,
                            std::function<void(const Snippet&)> onSelect,
                            std::function<void()> onDismiss, QObject* parent = nullptr);
    ~CommandPaletteViewModel() override;

    /// The text of the search field. Each assignment, also of the same text, is searched after
    /// 50 ms of quiet, and the selection then goes back to the first row.
    [[nodiscard]] const QString& query() const { return queryText; }
    void setQuery(const QString& text);

    /// The results, or the whole library when the query is empty; not cut to the display limit.
    [[nodiscard]] const QList<Snippet>& filteredSnippets() const { return filtered; }
    /// The snippets used today, latest first, while the query is empty; not cut.
    [[nodiscard]] const QList<Snippet>& todaySnippets() const { return today; }
    [[nodiscard]] int selectedIndex() const { return selection; }
    void setSelectedIndex(int index);
    /// The snippet to mark as just copied. Only ever reset: no path fills it.
    [[nodiscard]] const std::optional<QString>& justCopiedID() const { return justCopied; }
    /// The calculator row, of a calculation or a conversion.
    [[nodiscard]] const std::optional<CalculationResult>& calculationResult() const
    {
        return calculation;
    }
    /// The password rows; while there are any, there are neither snippets nor a calculation.
    [[nodiscard]] const QList<PasswordResult>& passwordResults() const { return passwords; }

    /// How many rows there are.
    [[nodiscard]] int totalItemCount() const;

    /// To be called each time the panel appears: reads the library and starts afresh. The old
    /// query is searched at once, so the panel is filled before the field is cleared.
    void onAppear();

    void moveSelectionUp();
    void moveSelectionDown();

    /// Carries out the selected row; without such a row nothing happens.
    void selectCurrentItem();
    /// Opens the selected snippet in the main window. A calculator row is not allowed for: with
    /// one on top, the snippet below the selected row opens.
    void openCurrentItemInApp();
    /// Copies the snippet with its placeholders filled, counts the use and closes the panel.
    void copyAndDismiss(const Snippet& snippet);
    /// Copies the result of the calculator row, if there is one, and closes the panel.
    void copyCalculatorResult();
    /// Copies the password as a secret and closes the panel.
    void copyPasswordResult(const PasswordResult& result);

    /// Asks the owner to close the panel.
    void dismiss();

Q_SIGNALS:
    void queryChanged();
    /// Snippets, passwords and calculation have been computed anew.
    void resultsChanged();
    void selectedIndexChanged();

private:
    [[nodiscard]] Debouncer setupBindings();
    void performSearch();
    void detectAndGeneratePassword();
    void detectAndCalculate();
    void searchSnippets();
    [[nodiscard]] QList<Snippet> filterTodaySnippets(const QList<Snippet>& mostRecentFirst) const;
    [[nodiscard]] std::optional<Snippet> snippetAtEmptyQuery(int index) const;
    [[nodiscard]] std::optional<Snippet> filteredSnippet(int index) const;
    [[nodiscard]] int todayRowCount() const;

    Dependencies services;
    std::function<void(const Snippet&)> onSelect;
    std::function<void()> onDismiss;
    Debouncer queryDebounce; ///< searches once the typing rests

    QString queryText;
    QList<Snippet> filtered;
    QList<Snippet> today;
    int selection = 0;
    std::optional<QString> justCopied;
    std::optional<CalculationResult> calculation;
    QList<PasswordResult> passwords;
    QList<Snippet> allSnippets; ///< the library as of the last onAppear
    RecencyOrder recencyOrder;
};

} // namespace vellumry
