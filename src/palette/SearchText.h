#pragma once

#include "models/Snippet.h"
#include "palette/ByteScanner.h"

#include <QList>

#include <array>
#include <cstdlib>
#include <limits>
#include <memory>
#include <optional>
#include <vector>

namespace vellumry {

/// The text of a library prepared for searching: that of all snippets, lower-cased and encoded
/// (see SearchEncoding.h), one behind the other in one stretch of memory.
///
/// It stays true to a list by update(), which costs nothing when the list is the very one it was
/// prepared from, compares handle by handle otherwise, and folds only snippets whose texts changed:
/// the new text goes to the end, the old one is blotted out, and when a quarter is blotted out
/// everything is laid out afresh, in the order of the list, from what is there.
///
/// About 0.6 bytes for each byte of the library's files. Not shared between threads.
class SearchText {
public:
    enum Field { title, subtitle, content, collection, keywords };
    static constexpr int fieldCount = 5;

    /// Where the text of one snippet stands: the fields in the order above with one blank between
    /// each two, and the byte 0xFF, which no needle holds, behind the last.
    struct Record {
        quint64 start = 0; ///< ascending from record to record
        /// Ends of the fields, counted from `start`; 32 bits hold more than a stored file can.
        std::array<quint32, fieldCount> ends{};
        quint32 position = 0; ///< of the snippet in the list

        [[nodiscard]] quint32 fieldStart(int field) const
        {
            return field == 0 ? 0 : ends[static_cast<size_t>(field) - 1] + 1;
        }
        [[nodiscard]] quint32 fieldEnd(int field) const { return ends[static_cast<size_t>(field)]; }
    };

    /// Prepares the text of `snippets`, reusing what it can of the last list's.
    void update(const QList<Snippet>& snippets);

    /// The bytes of all records; readable ByteScanner::overrun further.
    [[nodiscard]] const unsigned char* begin() const { return bytes.get(); }
    [[nodiscard]] const unsigned char* end() const { return bytes.get() + used; }

    /// One for each snippet, and one without text for each that was blotted out.
    [[nodiscard]] const std::vector<Record>& records() const { return all; }
    /// The record of the snippet at a position of the list.
    [[nodiscard]] const Record& recordOf(qsizetype position) const
    {
        return all[slots[static_cast<size_t>(position)]];
    }
    /// The index of the record that holds `place`, which is not before record `from`.
    [[nodiscard]] size_t recordAt(const unsigned char* place, size_t from) const;
    /// Whether the records stand in the order of the list.
    [[nodiscard]] bool isInListOrder() const { return inListOrder; }

    /// How often each byte occurs in a sample of the text.
    [[nodiscard]] const ByteHistogram& histogram() const { return sample; }

private:
    using Slot = quint32; ///< an index into `all`
    static constexpr Slot noSlot = std::numeric_limits<Slot>::max();

    struct Free {
        void operator()(void* memory) const { std::free(memory); }
    };

    [[nodiscard]] std::optional<std::vector<qsizetype>>
    changedInPlace(const QList<Snippet>& snippets) const;
    [[nodiscard]] std::vector<Slot> reusableSlots(const QList<Snippet>& snippets) const;

    void replace(const QList<Snippet>& snippets, const std::vector<qsizetype>& positions);
    void rearrange(const QList<Snippet>& snippets, std::vector<Slot> reusable);
    void layOut(const QList<Snippet>& snippets, std::vector<Slot> reusable);

    void buildSearchableText(const Snippet& snippet, qsizetype position);
    void appendCopy(const unsigned char* text, const Record& record, qsizetype position);
    void blotOut(Slot slot);
    [[nodiscard]] bool isWorn() const { return blotted > used / 4; }
    void reserve(size_t capacity);
    void finish();
    void takeSample();

    QList<Snippet> prepared;                      ///< what the text was prepared from
    std::unique_ptr<unsigned char[], Free> bytes; ///< from malloc, so that it can grow in place
    size_t capacity = 0;
    size_t used = 0;
    size_t blotted = 0; ///< bytes of `used` that are no snippet's text
    std::vector<Record> all;
    std::vector<Slot> slots; ///< by position in the list
    bool inListOrder = true;
    ByteHistogram sample{};
};

} // namespace vellumry
