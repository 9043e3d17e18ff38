#pragma once

#include <cstdlib>
#include <memory>

namespace vellumry {

struct FreeXcbReply {
    void operator()(void* reply) const { std::free(reply); }
};

/// An answer, an event or an error of the X server, which is its receiver's to free; null where
/// there was none.
template <typename Reply>
using XcbReply = std::unique_ptr<Reply, FreeXcbReply>;

} // namespace vellumry
