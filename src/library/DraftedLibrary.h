#pragma once

#include "models/Snippet.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace vellumry {

/// The snippets of the library as they are stored, and the drafts that are laid over them: a draft
/// takes the place of each stored snippet of its id. A draft without a stored snippet is kept
/// without effect.
///
/// What the lists ask for on every keystroke is kept up to date with each change, so that a draft
/// costs the same in a library of any size. Ids are meant to be unique; where they are not, all
/// answers stay right and only take longer.
class DraftedLibrary {
public:
    /// The stored snippets; never drafts.
    [[nodiscard]] const QList<Snippet>& snippets() const { return stored; }
    /// By id.
    [[nodiscard]] const QMap<QString, Snippet>& drafts() const { return edits; }

    /// The stored snippets, each replaced by its draft if there is one.
    [[nodiscard]] const QList<Snippet>& effective() const;
    /// Those of effective() that are drafts.
    [[nodiscard]] QList<Snippet> drafted() const;

    /// Where the first stored snippet of this id stands; -1 if there is none.
    [[nodiscard]] qsizetype indexOf(const QString& id) const;
    [[nodiscard]] bool hasUniqueIds() const { return positions.size() == stored.size(); }
    /// The draft of this id, or the first stored snippet; nothing if none is stored.
    [[nodiscard]] std::optional<Snippet> effective(const QString& id) const;

    /// How many of effective() are in the collection of this name.
    [[nodiscard]] qsizetype count(const QString& collection) const { return counts()[collection]; }
    /// The names of the collections that effective() are in, each once, in no order.
    [[nodiscard]] QStringList collectionNames() const { return counts().keys(); }

    /// Differs after each change of effective().
    [[nodiscard]] quint64 version() const { return changes; }

    // The changes tell whether anything is different now.

    bool setSnippets(const QList<Snippet>& snippets);
    /// Puts a snippet of the same id in the place of the stored one.
    bool replace(qsizetype position, const Snippet& snippet);
    void append(const Snippet& snippet);
    /// Removes the stored snippets of this id. Its draft stays.
    bool remove(const QString& id);

    bool setDraft(const Snippet& draft);
    bool removeDraft(const QString& id);
    bool clearDrafts();

private:
    using Counts = QHash<QString, qsizetype>;

    [[nodiscard]] const Counts& counts() const;
    [[nodiscard]] const Snippet& effectiveAt(qsizetype position) const;
    void index();
    void leaveGap(qsizetype place);
    [[nodiscard]] qsizetype gapsBefore(qsizetype place) const;
    void recount(const Snippet& before, const Snippet& now);
    void uncount(const QString& collection);
    void note();

    QList<Snippet> stored;
    QMap<QString, Snippet> edits;
    /// The first of each id in `stored`, counted as if what was removed since then still stood in
    /// the gaps, so that a removal need not renumber all that come after it.
    QHash<QString, qsizetype> positions;
    std::vector<qsizetype> gaps; ///< ascending, and few
    quint64 changes = 0;
    mutable std::optional<Counts> countOf;          ///< by collection, of effective(); never 0
    mutable std::optional<QList<Snippet>> overlaid; ///< effective() while there are drafts
};

} // namespace vellumry
