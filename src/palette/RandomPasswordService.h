#pragma once

#include "palette/PasswordResult.h"

#include <QLatin1StringView>
#include <QList>
#include <QString>

#include <optional>

namespace vellumry {

class RandomSource;

/// Recognises the command "/rand:16" and makes passwords of that length. Keeps nothing.
class RandomPasswordService {
public:
    static constexpr QLatin1StringView lowercaseLetters{"abcdefghijklmnopqrstuvwxyz"};
    static constexpr QLatin1StringView uppercaseLetters{"ABCDEFGHIJKLMNOPQRSTUVWXYZ"};
    static constexpr QLatin1StringView digits{"0123456789"};
    static constexpr QLatin1StringView simpleSymbols{"-_@#"};
    static constexpr QLatin1StringView complexSymbols{"!@#$%^&*()-_=+[]{}|;:,.<>?/"};
    static constexpr int maxLength = 64;

    /// `randomSource` outlives the service.
    explicit RandomPasswordService(RandomSource& randomSource) : source(randomSource) {}

    /// The one with the machine's cryptographic source.
    [[nodiscard]] static const RandomPasswordService& shared();

    /// The length that the query asks for, from 1 to maxLength; nothing if it is no command.
    [[nodiscard]] std::optional<int> extractRandomCommand(const QString& query) const;

    /// One password for each complexity, the weakest first. Each position is uniform over the
    /// alphabet and independent of all others, so that no class of characters is sure to occur.
    /// Throws RandomSourceError.
    [[nodiscard]] QList<PasswordResult> generate(int length) const;

private:
    [[nodiscard]] QString randomString(const QString& alphabet, int length) const;

    RandomSource& source;
};

} // namespace vellumry
