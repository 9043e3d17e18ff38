#include "core/Digest.h"

#include <QHashFunctions>

#include <algorithm>

namespace vellumry {

void Digest::add(QByteArrayView piece)
{
    static_assert(sizeof(size_t) == sizeof(quint64));
    state = qHashBits(piece.data(), static_cast<size_t>(piece.size()), state);
}

quint64 Digest::of(QByteArrayView bytes)
{
    Digest digest;
    for (qsizetype begin = 0; begin < bytes.size(); begin += pieceSize)
        digest.add(bytes.sliced(begin, std::min(pieceSize, bytes.size() - begin)));
    return digest.value();
}

} // namespace vellumry
