#pragma once

#include "core/Scheduler.h"
#include "platform/FileEventStream.h"
#include "platform/linux/FolderLook.h"
#include "platform/linux/InotifyCalls.h"

#include <QByteArray>
#include <QHash>
#include <QSet>

#include <optional>
#include <utility>

struct inotify_event;

namespace vellumry {

/// A stream through the system's inotify. Beside the folder it watches the way to it, so that a
/// folder that moves away with one above it is missed at once; while there is no folder, it is
/// looked for each second.
///
/// inotify tells what happens on this machine. In a folder on a file server other machines change
/// files unseen, so such a folder is looked through every few seconds as well, and the log says
/// that changes may come late or not at all. A folder of this machine costs nothing while it rests.
///
/// A file in the folder that is a link is told of when the link changes; what happens to the file
/// that it leads to happens elsewhere, and is not heard.
class InotifyFileEventStream final : public FileEventStream {
public:
    /// Nothing when the system has no inotify instance left. The references outlive the stream.
    [[nodiscard]] static std::unique_ptr<FileEventStream>
    create(const Request& request, Scheduler& scheduler, InotifyCalls& calls, FileSystem& files);

    ~InotifyFileEventStream() override;
    bool start() override;
    void stop() override;

private:
    using Identity = std::pair<quint64, quint64>; ///< device and inode

    InotifyFileEventStream(Request wanted, Scheduler& timing, InotifyCalls& systemCalls,
                           FileSystem& fileSystem, int openDescriptor);

    void listen();
    bool arm();
    void disarm();
    void rearm();
    void rearmIfReplaced();
    void watchTheWay();
    void watchWithFoldersAbove(const QByteArray& path);
    void watchOnTheWay(const QByteArray& path, uint32_t events);
    [[nodiscard]] std::optional<QByteArray> linkTarget(const QByteArray& path);
    [[nodiscard]] std::optional<Identity> identity();

    [[nodiscard]] bool isRemote();
    void beginLooking();
    void lookAfterAWhile();

    void readEvents();
    void take(const struct ::inotify_event& event, const char* name);
    void add(const QString& path, quint32 flags);
    void deliver();

    Request request;
    QByteArray nativeFolder;
    Scheduler& scheduler;
    InotifyCalls& calls;
    FileSystem& files;
    int descriptor;
    int mountTable = -1;

    // Touched on the queue's thread only.
    std::unique_ptr<QObject> anchor; ///< there while started; owns what is pending on the queue
    int folderWatch = -1;
    QSet<int> wayWatches;
    std::optional<Identity> watched;
    std::optional<FolderLook> look; ///< there while the watched folder is a remote one
    bool isLookDue = false;
    bool isLost = false;    ///< the watched folder is no longer the one at the path
    bool isCooling = false; ///< a batch was delivered less than the latency ago
    QStringList paths;      ///< of the next batch
    QList<quint32> flags;
    QHash<std::pair<QString, bool>, qsizetype> positions; ///< by path and whether it is a folder
};

} // namespace vellumry
