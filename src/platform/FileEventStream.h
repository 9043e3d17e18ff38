#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>
#include <memory>

namespace vellumry {

/// Tells what happens to the files of one folder, not of those below it, whoever does it. The
/// folder is the one that stands at the path at each time: when it is removed, moved away, mounted
/// over or made again, the stream finds it again by itself and tells of a change. Where a change
/// may have been missed, one is told. Such changes bear the path of the folder itself.
///
/// Two limits: what another machine does in a folder on a file server is told late, or not at all
/// when the server's listing does not show it; and of a link to a file elsewhere only the link is
/// watched, not the file.
///
/// Calls back on its queue. Made and destroyed on another thread, started and stopped on either.
class FileEventStream {
public:
    /// What happened to a file. Several may be told at once.
    enum Flag : quint32 {
        itemCreated = 0x100,
        itemRemoved = 0x200,
        itemRenamed =
            0x800, ///< also what was there before and after: to, from and within the folder
        itemModified = 0x1000,
        itemIsDirectory = 0x20000, ///< it is no file but a folder
    };

    /// Takes a batch: paths, and the flags of each.
    using Callback = std::function<void(const QStringList& paths, const QList<quint32>& flags)>;

    struct Request {
        QString folder; ///< an absolute path; there may be nothing yet
        /// Events that follow one another within this time come as one batch; the first event
        /// after a quiet time comes at once.
        std::chrono::milliseconds latency{};
        QObject* queue = nullptr; ///< see SerialQueue; outlives the stream
        Callback callback;
    };

    /// Makes a stream that is not started; nothing when the system has none to give.
    using Factory = std::function<std::unique_ptr<FileEventStream>(const Request& request)>;

    /// Stops.
    virtual ~FileEventStream() = default;

    /// Tells everything that happens from now on. False when the folder cannot be watched.
    [[nodiscard]] virtual bool start() = 0;

    /// Waits for a callback that is running; no other comes after it.
    virtual void stop() = 0;

    /// A stream on a folder of this machine.
    [[nodiscard]] static std::unique_ptr<FileEventStream> local(const Request& request);
};

} // namespace vellumry
