#pragma once

#include <QByteArrayView>
#include <QString>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace vellumry::fuzz {

/// Ends the process, which is a finding, unless `condition` holds.
inline void require(bool condition, const char* rule)
{
    if (condition)
        return;
    std::fprintf(stderr, "violated: %s\n", rule);
    std::abort();
}

/// Takes values from the bytes of an input, one after the other.
class FuzzInput {
public:
    FuzzInput(const std::uint8_t* data, std::size_t size)
        : rest(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size))
    {
    }

    [[nodiscard]] bool isAtEnd() const { return rest.isEmpty(); }

    /// The next byte, 0 at the end.
    std::uint8_t byte()
    {
        if (rest.isEmpty())
            return 0;
        const auto value = static_cast<std::uint8_t>(rest.front());
        rest = rest.sliced(1);
        return value;
    }

    /// The text up to the next line feed, which separates texts; "\\n" in it is a line feed.
    QString text()
    {
        const qsizetype end = rest.indexOf('\n');
        const QByteArrayView bytes = end < 0 ? rest : rest.first(end);
        rest = end < 0 ? QByteArrayView() : rest.sliced(end + 1);
        return QString::fromUtf8(bytes).replace(QLatin1StringView("\\n"), QLatin1StringView("\n"));
    }

    [[nodiscard]] QByteArrayView remaining() const { return rest; }

private:
    QByteArrayView rest;
};

} // namespace vellumry::fuzz
