#pragma once

#include "models/Snippet.h"

#include <QList>
#include <QString>

#include <random>

namespace vellumry::test {

/// Makes small libraries and queries out of few and nasty pieces, so that hits, near misses, ties
/// and odd characters are frequent. The same seed gives the same sequence.
class RandomLibrary {
public:
    explicit RandomLibrary(unsigned seed) : engine(seed) {}

    /// A number from 0 to `limit` - 1.
    [[nodiscard]] int below(int limit)
    {
        return std::uniform_int_distribution<int>(0, limit - 1)(engine);
    }

    /// Up to `most` pieces in a row; mostly short.
    [[nodiscard]] QString text(int most);
    [[nodiscard]] QString query();
    [[nodiscard]] Snippet snippet();
    [[nodiscard]] QList<Snippet> snippets(int most);

    /// The list after what a user, a copy from the palette, or a change of the files may do to it.
    [[nodiscard]] QList<Snippet> changed(QList<Snippet> snippets);

private:
    std::mt19937 engine;
    qint64 nextId = 0;
};

} // namespace vellumry::test
