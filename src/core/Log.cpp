#include "core/Log.h"

#include <QByteArray>
#include <QString>
#include <QStringBuilder>

#include <cstdio>
#include <mutex>
#include <utility>

namespace vellumry {

namespace {

std::function<void(QStringView)>& logSink()
{
    static std::function<void(QStringView)> sink;
    return sink;
}

std::mutex& logMutex()
{
    static std::mutex mutex;
    return mutex;
}

} // namespace

void log(QStringView typeName, QStringView message)
{
    logLine(QString(typeName % u": " % message));
}

void logLine(QStringView line)
{
    const std::lock_guard lock(logMutex());
    if (const auto& sink = logSink()) {
        sink(line);
        return;
    }
    QByteArray bytes = line.toUtf8();
    bytes.append('\n');
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stdout);
    std::fflush(stdout);
}

void setLogSink(std::function<void(QStringView)> sink)
{
    logSink() = std::move(sink);
}

} // namespace vellumry
