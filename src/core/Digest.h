#pragma once

#include <QByteArrayView>

namespace vellumry {

/// A number that tells some bytes from others. It guards against accidents and not against forgery,
/// and means something only in this run of the program.
class Digest {
public:
    /// Bytes are added in pieces of this size, of which only the last one may be smaller.
    static constexpr qsizetype pieceSize = qsizetype{128} * 1024;

    void add(QByteArrayView piece);
    [[nodiscard]] quint64 value() const { return state; }

    [[nodiscard]] static quint64 of(QByteArrayView bytes);

private:
    quint64 state = 0x76656c6c756d7279;
};

} // namespace vellumry
