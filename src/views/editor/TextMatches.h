#pragma once

#include "views/editor/TextEdit.h"

#include <vector>

namespace vellumry {

/// Where a term stands in a text, in capitals or not; no match overlaps another. A term is a part
/// of a line. The matches follow an edit by a search of the touched lines alone.
class TextMatches {
public:
    void search(const QString& text, const QString& searchTerm);
    void follow(const TextEdit& edit);

    [[nodiscard]] const QString& term() const { return wanted; }
    /// Where the matches begin, in the order of the text.
    [[nodiscard]] const std::vector<qsizetype>& positions() const { return found; }
    [[nodiscard]] qsizetype count() const { return qsizetype(found.size()); }

private:
    [[nodiscard]] std::vector<qsizetype> matchesIn(const QString& text, qsizetype begin,
                                                   qsizetype end) const;

    QString wanted;
    std::vector<qsizetype> found;
};

} // namespace vellumry
