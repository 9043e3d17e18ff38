#pragma once

#include "core/Log.h"

#include <QStringList>

namespace vellumry::test {

/// Collects the diagnostic lines of its lifetime instead of printing them.
class LogCapture {
public:
    LogCapture()
    {
        setLogSink([this](QStringView line) { lines.append(line.toString()); });
    }
    ~LogCapture() { setLogSink({}); }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    QStringList lines;
};

} // namespace vellumry::test
