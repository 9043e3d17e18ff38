#pragma once

#include "core/ByteSink.h"
#include "core/Date.h"
#include "core/Digest.h"

#include <QByteArrayView>
#include <QString>

#include <cstdlib>
#include <cstring>
#include <memory>

namespace vellumry {

/// Writes pretty-printed JSON (RFC 8259, UTF-8), one key a line, into one growing buffer.
/// The caller writes the keys of each object in sorted order. A lone surrogate of a text becomes
/// U+FFFD, since it has no UTF-8 form.
class JSONWriter {
public:
    explicit JSONWriter(DatePrecision ofDates = DatePrecision::milliseconds)
        : datePrecision(ofDates)
    {
    }

    void beginObject() { open('{'); }
    void endObject() { close('}'); }
    void beginArray() { open('['); }
    void endArray() { close(']'); }

    /// A key of the program's own: ASCII without characters that need an escape.
    template <size_t size>
    void key(const char (&name)[size])
    {
        // A length that the compiler knows makes the copy a store or two.
        char* const out = startKey(size - 1);
        std::memcpy(out, name, size - 1);
        endKey(out + size - 1);
    }
    /// A key that the user chose.
    void key(const QString& name);

    void value(const QString& text);
    void value(qint64 number);
    void value(bool truth);
    void value(Date date);

    /// Starts anew and keeps the memory. With a sink, drain() gives the text away piece by piece; a
    /// sink that has gone needs a clear() before the next text.
    void clear(const ByteSink* newSink = nullptr);

    /// With a sink, to be called now and then: gives it what was written so far, as far as that
    /// fills whole pieces.
    void drain()
    {
        if (sink && used >= pieceSize)
            givePieces();
    }

    /// In bytes.
    static constexpr size_t pieceSize = Digest::pieceSize;

    /// What was written so far and not given to the sink; valid until the next call.
    [[nodiscard]] QByteArrayView bytes() const
    {
        return {buffer.get(), static_cast<qsizetype>(used)};
    }

private:
    void givePieces();
    void open(char bracket);
    void close(char bracket);
    void startElement();
    char* startKey(size_t size);
    void endKey(char* out);
    void quoted(const QString& text);
    char* room(size_t count);
    void append(QByteArrayView text);

    struct Free {
        void operator()(char* memory) const { std::free(memory); }
    };
    DatePrecision datePrecision;
    const ByteSink* sink = nullptr;
    std::unique_ptr<char, Free> buffer;
    size_t used = 0;
    size_t capacity = 0;
    int depth = 0;
    bool isFirst = true;     ///< no element yet in the innermost object or array
    bool isAfterKey = false; ///< the next value belongs to the key just written
};

} // namespace vellumry
