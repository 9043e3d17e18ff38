#pragma once

#include "core/Scheduler.h"
#include "platform/FileEventStream.h"
#include "platform/FileSystem.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace vellumry {

/// Tells of changes to the files of one folder: one call for a burst of changes, once there has
/// been quiet for a while. A folder that never comes to rest is therefore never told of.
///
/// Used on the main thread, where it calls back as well. Watching does its best: what cannot be
/// watched is told in the log alone. A file that is a link counts when the link changes; a change
/// of the file that it leads to, in another folder, goes unseen.
class FileWatcherService final : public QObject {
    Q_OBJECT

public:
    /// Quiet time between the last change and the callback.
    static constexpr std::chrono::milliseconds debounceDelay{500};
    static constexpr std::chrono::milliseconds latency{300};
    static constexpr QStringView callbackQueueLabel = u"com.vellumry.filewatcher";

    /// Outlive the watcher.
    struct Dependencies {
        FileSystem& files;
        Scheduler& scheduler;
        FileEventStream::Factory makeEventStream;
        QObject& callbackQueue; ///< see SerialQueue; takes the events and waits for the quiet
    };

    /// With a target file name, only changes to files of that name count; changes that the stream
    /// tells of the folder as a whole, when it is another one or events were lost, do not then.
    /// Starts nothing.
    FileWatcherService(Dependencies dependencies, const QString& watchPath,
                       const std::optional<QString>& targetFileName,
                       std::function<void()> onChange);
    ~FileWatcherService() override;

    /// Makes the folder if it is missing.
    void startWatching();
    /// Forgets changes that were not told yet.
    void stopWatching();
    [[nodiscard]] bool isWatching() const { return watching; }

private:
    /// A notification that waits for the quiet.
    struct DebounceWorkItem {};

    friend void fileEventCallback(FileWatcherService* context, const QStringList& paths,
                                  const QList<quint32>& flags);

    void handleFileEvent(const QStringList& paths, const QList<quint32>& flags);
    void debounceAndNotify();

    Dependencies with;
    const QString watchPath;
    const std::optional<QString> targetFileName;
    const std::function<void()> onChange;
    std::unique_ptr<FileEventStream> eventStream;
    bool watching = false;
    std::shared_ptr<DebounceWorkItem> debounceWorkItem; ///< touched on the callback queue only
};

/// What the event stream calls, on the callback queue.
void fileEventCallback(FileWatcherService* context, const QStringList& paths,
                       const QList<quint32>& flags);

} // namespace vellumry
