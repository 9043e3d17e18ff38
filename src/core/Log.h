#pragma once

#include <QStringView>

#include <functional>

namespace vellumry {

/// Prints the diagnostic line "TypeName: message" to standard output and flushes it.
/// Thread-safe.
void log(QStringView typeName, QStringView message);

/// Prints one line as it stands, for the few diagnostics without a type name.
void logLine(QStringView line);

/// Takes the lines in place of standard output, for tests. An empty function brings the output
/// back. Not to be called while other threads log.
void setLogSink(std::function<void(QStringView line)> sink);

} // namespace vellumry
