#include "palette/RandomPasswordService.h"

#include "core/Text.h"
#include "models/Identifier.h"
#include "platform/RandomSource.h"

#include <algorithm>
#include <charconv>

namespace vellumry {

namespace {

constexpr QStringView commandPrefix = u"/rand:";

__extension__ using Product = unsigned __int128;

/// A whole decimal number: an optional sign and then nothing but ASCII digits.
std::optional<qint64> wholeNumber(QStringView text)
{
    const QByteArray bytes = text.toLatin1();
    const char* const end = bytes.end();
    // "+-8" passes as -8, which is no length either.
    const char* const begin = bytes.begin() + (bytes.startsWith('+') ? 1 : 0);
    qint64 number = 0;
    const auto [stop, error] = std::from_chars(begin, end, number);
    if (stop != end || error != std::errc())
        return std::nullopt;
    return number;
}

QString alphabetOf(PasswordComplexity complexity)
{
    using Service = RandomPasswordService;
    QString alphabet = Service::lowercaseLetters;
    if (complexity != PasswordComplexity::simple)
        alphabet += Service::uppercaseLetters;
    alphabet += Service::digits;
    if (complexity == PasswordComplexity::medium)
        alphabet += Service::simpleSymbols;
    if (complexity == PasswordComplexity::strong)
        alphabet += Service::complexSymbols;
    return alphabet;
}

} // namespace

const RandomPasswordService& RandomPasswordService::shared()
{
    static const RandomPasswordService service(RandomSource::system());
    return service;
}

std::optional<int> RandomPasswordService::extractRandomCommand(const QString& query) const
{
    const QStringView text = trimmedHorizontally(query);
    if (!text.startsWith(commandPrefix, Qt::CaseInsensitive))
        return std::nullopt;
    const auto length = wholeNumber(trimmedHorizontally(text.sliced(commandPrefix.size())));
    if (!length || *length < 1)
        return std::nullopt;
    return static_cast<int>(std::min<qint64>(*length, maxLength));
}

QList<PasswordResult> RandomPasswordService::generate(int length) const
{
    const int used = std::clamp(length, 1, maxLength);
    QList<PasswordResult> results;
    for (const auto complexity :
         {PasswordComplexity::simple, PasswordComplexity::medium, PasswordComplexity::strong}) {
        results.append({.id = makeIdentifier(),
                        .password = randomString(alphabetOf(complexity), used),
                        .complexity = complexity,
                        .length = used});
    }
    return results;
}

QString RandomPasswordService::randomString(const QString& alphabet, int length) const
{
    const auto size = static_cast<quint64>(alphabet.size());
    // 2^64 words do not share out evenly among `size` characters: this many are drawn again.
    const quint64 threshold = (0 - size) % size;
    QString result;
    result.reserve(length);
    RandomWord word;
    while (result.size() < length) {
        source.fill(word);
        const Product product = Product(word.value) * size;
        if (static_cast<quint64>(product) >= threshold)
            result.append(alphabet[static_cast<qsizetype>(product >> 64)]);
    }
    return result;
}

} // namespace vellumry
