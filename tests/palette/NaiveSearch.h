#pragma once

#include "models/Snippet.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace vellumry::test {

/// Search as it is defined, done in the plainest way: everything is lower-cased anew for each
/// search, and nothing is kept. What the real search is measured against, in results and in time.
[[nodiscard]] QList<Snippet> naiveSearch(const QString& query, const QList<Snippet>& snippets);

/// QString::toLower of each stretch between surrogates that stand alone.
[[nodiscard]] QString naiveLowerCased(const QString& text);

/// The terms of a query, walked by user-perceived characters throughout.
[[nodiscard]] QStringList naiveSplitKeywords(const QString& query);

} // namespace vellumry::test
