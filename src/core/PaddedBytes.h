#pragma once

#include <QByteArrayView>

#include <cstring>
#include <memory>

namespace vellumry {

/// The bytes of a file, followed by readable zero bytes, so that a parser may load whole vectors
/// beyond the end. Uninitialised until filled; owned, movable, not copied.
class PaddedBytes {
public:
    static constexpr size_t padding = 64;

    PaddedBytes() : PaddedBytes(0) {}

    /// Room for `count` bytes that the caller fills through data().
    explicit PaddedBytes(size_t count)
        : bytes(std::make_unique_for_overwrite<char[]>(count + padding)), length(count)
    {
        std::memset(bytes.get() + length, 0, padding);
    }

    /// A copy of `content`.
    explicit PaddedBytes(QByteArrayView content) : PaddedBytes(static_cast<size_t>(content.size()))
    {
        if (!content.isEmpty())
            std::memcpy(bytes.get(), content.data(), length);
    }

    [[nodiscard]] char* data() { return bytes.get(); }
    [[nodiscard]] const char* data() const { return bytes.get(); }
    [[nodiscard]] size_t size() const { return length; }
    [[nodiscard]] QByteArrayView view() const
    {
        return {bytes.get(), static_cast<qsizetype>(length)};
    }

    /// Cuts to the first `newLength` bytes, at most the present size.
    void truncate(size_t newLength)
    {
        length = newLength;
        std::memset(bytes.get() + length, 0, padding);
    }

private:
    std::unique_ptr<char[]> bytes;
    size_t length;
};

} // namespace vellumry
