#pragma once

#include "platform/RandomSource.h"

#include <QList>

namespace vellumry::test {

/// Gives the words of a list, then those of a fixed sequence (splitmix64).
class FakeRandomSource final : public RandomSource {
public:
    void fill(RandomWord& word) override
    {
        if (isBroken)
            throw RandomSourceError(QStringLiteral("out of order"));
        word.value = drawn < words.size() ? words[drawn] : nextOfSequence();
        ++drawn;
    }

    QList<quint64> words;
    qsizetype drawn = 0; ///< how many words were taken
    bool isBroken = false;

private:
    quint64 nextOfSequence()
    {
        state += 0x9E3779B97F4A7C15U;
        quint64 mixed = state;
        mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9U;
        mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBU;
        return mixed ^ (mixed >> 31);
    }
    quint64 state = 0;
};

} // namespace vellumry::test
