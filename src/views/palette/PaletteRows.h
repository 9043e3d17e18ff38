#pragma once

#include "calculators/CalculationResult.h"
#include "models/Snippet.h"
#include "palette/PasswordResult.h"

#include <QList>
#include <QString>

#include <functional>
#include <optional>

namespace vellumry {

/// What a line of the palette's list is.
enum class PaletteRowKind {
    sectionHeader,
    openApp,
    password,
    calculator,
    snippet,
};

/// One line of the palette's list, with the texts to show.
struct PaletteRow {
    PaletteRowKind kind = PaletteRowKind::sectionHeader;
    QString id = {};       ///< unique in the list; empty for a header
    int index = -1;        ///< place in the model's numbering; -1 for a header
    int hoverIndex = -1;   ///< what stands for this row as the hovered one: mostly the index
    QString symbol = {};   ///< the icon's name; empty for a snippet, which has a dot
    QString title = {};    ///< of an answer: the password or the result
    QString detail = {};   ///< subtitle, collection or caption; of a calculation what was typed
    QString trailing = {}; ///< time, count or age; may be empty
    QString badge = {};    ///< may be empty
    bool isCopied = false;
    std::optional<Snippet> snippet = {}; ///< of a snippet row

    [[nodiscard]] bool isHeader() const { return kind == PaletteRowKind::sectionHeader; }

    friend bool operator==(const PaletteRow&, const PaletteRow&) = default;
};

/// The list's contents, from top to bottom, as they follow from the model's state.
class PaletteRows {
public:
    /// The hovered index that means the row "Open Vellumry".
    static constexpr int openAppHoverIndex = -1;
    /// The hovered index that means the calculator row.
    static constexpr int calculatorHoverIndex = -100;

    /// The part of the model's state that decides the rows.
    struct State {
        QString query = {};
        QList<Snippet> filteredSnippets = {}; ///< not cut
        QList<Snippet> todaySnippets = {};    ///< not cut
        std::optional<QString> justCopiedID = {};
        std::optional<CalculationResult> calculationResult = {};
        QList<PasswordResult> passwordResults = {};
    };

    PaletteRows() = default;
    /// `now` is what the ages of the rows count from.
    PaletteRows(const State& state, Date now);

    /// The lines in order, headers among them.
    [[nodiscard]] const QList<PaletteRow>& lines() const { return rows; }

    /// How many rows there are, headers aside.
    [[nodiscard]] int totalItemCount() const { return itemCount; }

    /// The selection to draw and to scroll to, for any selected index of the model.
    [[nodiscard]] int clampedSelection(int selectedIndex) const;

    /// The line of the row with this index; -1 when there is none.
    [[nodiscard]] qsizetype lineOfIndex(int index) const;

    /// Whether there is nothing to show but the message about it.
    [[nodiscard]] bool showsEmptyState() const { return isEmptyState; }

private:
    void addHeader(const QString& title);
    void addOpenApp();
    void addPasswords(const QList<PasswordResult>& passwords);
    void addCalculation(const CalculationResult& result);
    void addSnippets(const QList<Snippet>& snippets, int firstIndex, const QString& idPrefix,
                     const std::optional<QString>& copiedID,
                     const std::function<QString(const Snippet&)>& trailingText);

    QList<PaletteRow> rows;
    int itemCount = 0;
    bool isEmptyState = false;
};

/// The time of day in local time, as in "2:41 PM".
[[nodiscard]] QString timeString(Date time);

/// The age of `lastUsedAt` by elapsed time: "Just now", "5m ago", "3h ago", "Yesterday",
/// "2d ago", and from a week on the local date, as in "Oct 12".
[[nodiscard]] QString lastUsedString(Date lastUsedAt, Date now);

} // namespace vellumry
