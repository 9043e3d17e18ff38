#pragma once

#include "core/Date.h"

#include <QHashFunctions>
#include <QList>
#include <QMap>
#include <QSharedDataPointer>
#include <QString>
#include <QStringList>

#include <optional>

namespace vellumry {

/// The fields of a Snippet, for building one.
struct SnippetFields {
    QString id; ///< unique, opaque
    QString title;
    QString subtitle;   ///< one line; see Snippet::setSubtitle
    QString collection; ///< the *name* of the collection that owns the snippet, not its id
    QString content;    ///< the text that is copied; may hold {{name}} placeholders
    QStringList keywords;
    Date createdAt{};
    Date updatedAt{};
    qint64 usageCount = 0; ///< how often the snippet was copied
    std::optional<Date> lastUsedAt;
    std::optional<qint64> displayOrder; ///< manual position; absent means none
    QMap<QString, QString> variables;   ///< values of the placeholders, by name

    friend bool operator==(const SnippetFields&, const SnippetFields&) = default;
};

/// One piece of reusable text. An implicitly shared value: a handle of 8 bytes, copied freely;
/// a copy is detached when it is changed. Equality and hash take all twelve fields.
class Snippet {
public:
    /// A snippet whose fields are all empty.
    Snippet();

    /// Applies the rule of setSubtitle to the given subtitle.
    explicit Snippet(SnippetFields given);

    [[nodiscard]] const QString& id() const { return d->fields.id; }
    [[nodiscard]] const QString& title() const { return d->fields.title; }
    [[nodiscard]] const QString& subtitle() const { return d->fields.subtitle; }
    [[nodiscard]] const QString& collection() const { return d->fields.collection; }
    [[nodiscard]] const QString& content() const { return d->fields.content; }
    [[nodiscard]] const QStringList& keywords() const { return d->fields.keywords; }
    [[nodiscard]] Date createdAt() const { return d->fields.createdAt; }
    [[nodiscard]] Date updatedAt() const { return d->fields.updatedAt; }
    [[nodiscard]] qint64 usageCount() const { return d->fields.usageCount; }
    [[nodiscard]] std::optional<Date> lastUsedAt() const { return d->fields.lastUsedAt; }
    [[nodiscard]] std::optional<qint64> displayOrder() const { return d->fields.displayOrder; }
    [[nodiscard]] const QMap<QString, QString>& variables() const { return d->fields.variables; }
    [[nodiscard]] const SnippetFields& fields() const { return d->fields; }

    void setId(const QString& value) { d->fields.id = value; }
    void setTitle(const QString& value) { d->fields.title = value; }

    /// Keeps the subtitle to one line of at most 200 user-perceived characters: each line break
    /// (CR LF, LF or CR) becomes one blank, and what is longer is cut.
    void setSubtitle(const QString& value);

    void setCollection(const QString& value) { d->fields.collection = value; }
    void setContent(const QString& value) { d->fields.content = value; }
    void setKeywords(const QStringList& value) { d->fields.keywords = value; }
    void setCreatedAt(Date value) { d->fields.createdAt = value; }
    void setUpdatedAt(Date value) { d->fields.updatedAt = value; }
    void setUsageCount(qint64 value) { d->fields.usageCount = value; }
    void setLastUsedAt(std::optional<Date> value) { d->fields.lastUsedAt = value; }
    void setDisplayOrder(std::optional<qint64> value) { d->fields.displayOrder = value; }
    void setVariables(const QMap<QString, QString>& value) { d->fields.variables = value; }

    /// Whether both handles hold the very same data: a cheap test that implies equality.
    [[nodiscard]] bool sharesDataWith(const Snippet& other) const
    {
        return d.constData() == other.d.constData();
    }

    friend bool operator==(const Snippet& a, const Snippet& b)
    {
        return a.sharesDataWith(b) || a.d->fields == b.d->fields;
    }

private:
    struct Data : QSharedData {
        SnippetFields fields;
    };
    QSharedDataPointer<Data> d;
};

[[nodiscard]] size_t qHash(const Snippet& snippet, size_t seed = 0);

// The records of a large library lie scattered in memory, and a pass over all of them mostly waits
// for it. Called for each position, these ask for what the pass comes to some records later.

/// For a pass that reads all fields.
void prefetchFields(const QList<Snippet>& snippets, qsizetype position);

/// For copies of handles, out of order: the counter of each record's owners is written.
inline void prefetchHandle(const Snippet& snippet)
{
    __builtin_prefetch(&snippet.fields(), 1);
}

/// For a pass that reads the ids alone.
void prefetchId(const QList<Snippet>& snippets, qsizetype position);

} // namespace vellumry

Q_DECLARE_TYPEINFO(vellumry::Snippet, Q_RELOCATABLE_TYPE);
