#pragma once

#include "platform/StatusArea.h"

namespace vellumry::test {

/// A status area that a test makes appear by emitting its signals.
class FakeStatusArea final : public StatusArea {
public:
    void startLooking() override { ++starts; }

    int starts = 0;
};

} // namespace vellumry::test
