#pragma once

#include "models/Snippet.h"

#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>
#include <set>

namespace vellumry {

class DraftedLibrary;

/// The snapshot of ids that a list shows: from one refresh to the next the order stands, while the
/// contents are those of the moment. The one live filter is the collection that was selected at
/// the refresh: what has left it is in the snapshot still, and not shown.
///
/// Each id is held as the snippet that is shown for it, which is a handle of the library's own
/// data; so a row is found by comparing handles, without looking into the snippets.
class FrozenOrder {
public:
    /// The ids of the snapshot, and what stands for each, hidden or not.
    [[nodiscard]] QStringList ids() const;
    [[nodiscard]] const QList<Snippet>& contents() const { return rows; }

    /// The rows that are shown. Costs nothing while nothing changes; to be read where it is needed
    /// and not to be kept, since a kept copy makes the next change copy the list.
    [[nodiscard]] const QList<Snippet>& shown() const;
    /// The first row of shown() that shows the snippet of this id; -1 if there is none.
    [[nodiscard]] qsizetype shownRow(const QString& id, const DraftedLibrary& library) const;
    /// Differs after each change of shown().
    [[nodiscard]] quint64 version() const { return changes; }

    /// Takes a new snapshot: the snippets of `library` in `order`, as seen with the collection.
    void refresh(const QList<Snippet>& order, const std::optional<QString>& selectedCollection,
                 const DraftedLibrary& library);
    /// Takes what the library has now for each of the ids.
    void update(const DraftedLibrary& library);
    /// The same where only `before` has become `now` and the library's ids are unique.
    void update(const Snippet& before, const Snippet& now);
    /// The same for the row at this position of the snapshot.
    void update(qsizetype row, const Snippet& now);

    void append(const Snippet& snippet);
    /// Removes the row that shows this snippet.
    void remove(const Snippet& snippet);
    /// Removes all rows of these ids.
    void remove(const QSet<QString>& ids);
    void move(const std::set<qsizetype>& offsets, qsizetype target);

private:
    [[nodiscard]] bool isInCollection(const Snippet& snippet) const;
    void fill(const DraftedLibrary& library);
    void findHidden();

    QList<Snippet> rows;
    std::optional<QString> collection;
    bool hidesSome = false;
    mutable std::optional<QList<Snippet>> notHidden; ///< what is shown if some are hidden
    quint64 changes = 0;
};

} // namespace vellumry
