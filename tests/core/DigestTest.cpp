#include "core/Digest.h"

#include <QByteArray>
#include <gtest/gtest.h>

using namespace vellumry;

namespace {

TEST(DigestTest, isTheSameForTheSameBytes)
{
    EXPECT_EQ(Digest::of("abc"), Digest::of(QByteArray("abc")));
    EXPECT_EQ(Digest::of({}), Digest().value());
}

TEST(DigestTest, tellsEveryChangedByteAndLength)
{
    const QByteArray bytes(100, 'a');
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        QByteArray other = bytes;
        other[i] = 'b';
        EXPECT_NE(Digest::of(other), Digest::of(bytes)) << i;
        EXPECT_NE(Digest::of(bytes.first(i)), Digest::of(bytes)) << i;
    }
}

TEST(DigestTest, comesInPieces)
{
    QByteArray bytes;
    for (int i = 0; bytes.size() < 3 * Digest::pieceSize - 5; ++i)
        bytes.append(QByteArray::number(i));
    Digest digest;
    for (qsizetype begin = 0; begin < bytes.size(); begin += Digest::pieceSize)
        digest.add(bytes.mid(begin, Digest::pieceSize));
    EXPECT_EQ(digest.value(), Digest::of(bytes));

    QByteArray swapped = bytes.mid(Digest::pieceSize, Digest::pieceSize) +
                         bytes.first(Digest::pieceSize) + bytes.mid(2 * Digest::pieceSize);
    EXPECT_NE(Digest::of(swapped), Digest::of(bytes)) << "the order of the pieces counts";
}

} // namespace
