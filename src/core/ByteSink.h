#pragma once

#include <QByteArrayView>

#include <functional>

namespace vellumry {

/// Takes the next bytes of a text or file, valid during the call. May throw to refuse them.
using ByteSink = std::function<void(QByteArrayView piece)>;

/// Gives all bytes of a file to the sink, in pieces of any size and in order.
using ByteSource = std::function<void(const ByteSink& sink)>;

} // namespace vellumry
