#pragma once

#include <QString>

namespace vellumry {

/// One replacement in a text, and what it did to the text's lines. Both texts share their memory
/// with whoever keeps them.
struct TextEdit {
    QString before;
    QString after;
    qsizetype position = 0;
    qsizetype removed = 0;
    qsizetype inserted = 0;

    /// The lines that were touched, whole, as they were and as they are; the rest of the text is
    /// the same. A line ends with its line feed.
    struct Lines {
        qsizetype begin;
        qsizetype endBefore;
        qsizetype endAfter;
    };
    [[nodiscard]] Lines lines() const
    {
        const qsizetype begin = position == 0 ? 0 : after.lastIndexOf(u'\n', position - 1) + 1;
        const qsizetype feed = after.indexOf(u'\n', position + inserted);
        const qsizetype end = feed < 0 ? after.size() : feed + 1;
        return {begin, end - inserted + removed, end};
    }
};

} // namespace vellumry
