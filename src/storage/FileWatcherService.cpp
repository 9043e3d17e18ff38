#include "storage/FileWatcherService.h"

#include "core/Log.h"
#include "core/SerialQueue.h"

#include <QStringBuilder>

#include <algorithm>
#include <utility>

namespace vellumry {

namespace {

using namespace std::chrono_literals;

constexpr quint32 relevantChanges = FileEventStream::itemCreated | FileEventStream::itemRemoved |
                                    FileEventStream::itemRenamed | FileEventStream::itemModified;
static_assert(relevantChanges == 0x1B00);

void tell(const QString& message)
{
    vellumry::log(u"FileWatcherService", message);
}

} // namespace

FileWatcherService::FileWatcherService(Dependencies dependencies, const QString& folder,
                                       const std::optional<QString>& fileName,
                                       std::function<void()> callback)
    : with(std::move(dependencies)), watchPath(folder), targetFileName(fileName),
      onChange(std::move(callback))
{
    tell(u"初始化 - 监控路径: " % watchPath);
}

FileWatcherService::~FileWatcherService()
{
    stopWatching();
}

void FileWatcherService::startWatching()
{
    if (watching) {
        tell(QStringLiteral("已在监控中"));
        return;
    }
    if (!with.files.exists(watchPath)) {
        tell(QStringLiteral("监控目录不存在，尝试创建..."));
        try {
            with.files.createFolders(watchPath);
        } catch (const FileError&) {
            // The stream waits for the folder to appear.
        }
    }
    eventStream = with.makeEventStream(
        {.folder = watchPath,
         .latency = latency,
         .queue = &with.callbackQueue,
         .callback = [this](const QStringList& paths, const QList<quint32>& flags) {
             fileEventCallback(this, paths, flags);
         }});
    if (!eventStream) {
        tell(QStringLiteral("创建事件流失败"));
        return;
    }
    if (!eventStream->start()) {
        tell(QStringLiteral("启动事件流失败"));
        eventStream.reset();
        return;
    }
    watching = true;
    tell(u"开始监控 - " % watchPath);
}

void FileWatcherService::stopWatching()
{
    if (!watching)
        return;
    // On the queue, so that no event and no end of the quiet is half way through meanwhile.
    SerialQueue::runAndWait(with.callbackQueue, [this] {
        debounceWorkItem.reset();
        eventStream->stop();
    });
    eventStream.reset();
    watching = false;
    tell(QStringLiteral("停止监控"));
}

void fileEventCallback(FileWatcherService* context, const QStringList& paths,
                       const QList<quint32>& flags)
{
    if (context)
        context->handleFileEvent(paths, flags);
}

void FileWatcherService::handleFileEvent(const QStringList& paths, const QList<quint32>& flags)
{
    const qsizetype count = std::min(paths.size(), flags.size());
    for (qsizetype i = 0; i < count; ++i) {
        if (flags[i] & FileEventStream::itemIsDirectory)
            continue;
        if ((flags[i] & relevantChanges) == 0)
            continue;
        const QString& path = paths[i];
        if (targetFileName && path.sliced(path.lastIndexOf(u'/') + 1) != *targetFileName)
            continue;
        tell(u"检测到文件变化 - " % path);
        debounceAndNotify();
        return;
    }
}

void FileWatcherService::debounceAndNotify()
{
    debounceWorkItem = std::make_shared<DebounceWorkItem>();
    const auto notify = [this, item = std::weak_ptr(debounceWorkItem)] {
        if (item.expired())
            return; // cancelled, by another event or by the end of the watching
        tell(QStringLiteral("触发文件变化回调"));
        with.scheduler.after(0ms, this, [this] {
            if (watching)
                onChange();
        });
    };
    with.scheduler.after(debounceDelay, &with.callbackQueue, notify);
}

} // namespace vellumry
