#pragma once

#include <QByteArray>
#include <QString>

#include <exception>

namespace vellumry {

/// The system gave no random bytes.
class RandomSourceError : public std::exception {
public:
    /// `cause` in the words of the system.
    explicit RandomSourceError(const QString& cause);

    /// What failed and why, for the diagnostic lines.
    [[nodiscard]] const QString& description() const { return words; }
    [[nodiscard]] const char* what() const noexcept override { return bytes.constData(); }

private:
    QString words;
    QByteArray bytes;
};

/// 64 random bits. The memory they stood in is wiped when they go, as passwords are made from them.
class RandomWord {
public:
    RandomWord() = default;
    ~RandomWord();
    RandomWord(const RandomWord&) = delete;
    RandomWord& operator=(const RandomWord&) = delete;

    quint64 value = 0;
};

/// Bits that nobody can foretell. Safe to use from any thread.
class RandomSource {
public:
    virtual ~RandomSource() = default;

    /// Draws the word anew. Throws RandomSourceError; there is no weaker source to fall back on.
    virtual void fill(RandomWord& word) = 0;

    /// The cryptographic source of this machine.
    [[nodiscard]] static RandomSource& system();
};

} // namespace vellumry
