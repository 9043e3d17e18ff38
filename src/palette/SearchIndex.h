#pragma once

#include "models/Snippet.h"
#include "palette/ByteScanner.h"
#include "palette/SearchText.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>
#include <string>
#include <vector>

namespace vellumry {

/// Finds the snippets that hold given keywords, and puts them in the order of their scores.
///
/// Keywords are lower-case, not empty, and neither begin nor end with a blank; one given twice
/// counts twice. Results are the best score first, in the order of the list where scores are equal.
///
/// The prepared text of the last list is kept, see SearchText. Results do not depend on what was
/// kept. Not shared between threads.
class SearchIndex {
public:
    explicit SearchIndex(ByteScanner::Instructions instructions = ByteScanner::best());

    /// Prepares the text of the list, so that the next search in it has only to search.
    void prepare(const QList<Snippet>& snippets);

    /// The snippets whose fields, joined with blanks, hold every one of the keywords, of which
    /// there is at least one. A keyword may reach across the border of two fields.
    [[nodiscard]] QList<Snippet> holdingAnywhere(const QStringList& keywords,
                                                 const QList<Snippet>& snippets);

    /// The snippets whose collection holds every collection keyword and that hold every content
    /// keyword within one of the other fields. The score is that of the content keywords.
    [[nodiscard]] QList<Snippet> inCollection(const QStringList& collectionKeywords,
                                              const QStringList& contentKeywords,
                                              const QList<Snippet>& snippets);

private:
    /// Which fields hold a needle, and how: a set of the bits in SearchIndex.cpp.
    using Places = unsigned;

    struct Keyword {
        Needle needle;
        quint32 count; ///< how often it was given
    };

    /// A search in one list.
    struct Search {
        std::vector<Keyword> collection;
        std::vector<Keyword> keywords;
        std::string phrase;  ///< the keywords joined with one blank
        Places accepted = 0; ///< where each keyword must stand
    };

    /// A snippet that was found.
    struct Hit {
        quint32 position;
        quint32 rank; ///< the score in units of five, which divides all points
    };

    [[nodiscard]] std::vector<Keyword> distinct(const QStringList& keywords) const;
    [[nodiscard]] Places placesIn(const SearchText::Record& record, const Needle& needle,
                                  const unsigned char* from) const;
    [[nodiscard]] bool isInCollection(const SearchText::Record& record,
                                      const std::vector<Keyword>& collection) const;
    [[nodiscard]] std::optional<quint32> calculateRelevanceScore(const SearchText::Record& record,
                                                                 const Search& search,
                                                                 Places first) const;
    void putRarestFirst(std::vector<Keyword>& keywords) const;
    void find(const Search& search, std::vector<Hit>& hits) const;
    [[nodiscard]] QList<Snippet> ordered(std::vector<Hit> hits,
                                         const QList<Snippet>& snippets) const;
    [[nodiscard]] QList<Snippet> run(Search search, const QList<Snippet>& snippets);

    ByteScanner scanner;
    SearchText text;
};

} // namespace vellumry
