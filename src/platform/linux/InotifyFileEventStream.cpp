#include "platform/linux/InotifyFileEventStream.h"

#include "core/Log.h"
#include "core/SerialQueue.h"

#include <QByteArrayList>
#include <QSocketNotifier>
#include <QStringBuilder>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstring>
#include <linux/magic.h>
#include <sys/inotify.h>

namespace vellumry {

namespace {

using namespace std::chrono_literals;

/// How often a folder that is not there is looked for.
constexpr auto searchInterval = 1s;
/// How often a remote folder is looked through.
constexpr auto lookInterval = 5s;

constexpr uint32_t folderEvents = IN_CREATE | IN_DELETE | IN_MODIFY | IN_CLOSE_WRITE |
                                  IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF |
                                  IN_ONLYDIR | IN_EXCL_UNLINK;
/// Added to, since the way may pass a folder twice.
constexpr uint32_t wayEvents = IN_DELETE_SELF | IN_MOVE_SELF | IN_DONT_FOLLOW | IN_MASK_ADD;

quint32 flagsOf(uint32_t mask)
{
    quint32 flags = 0;
    if (mask & IN_CREATE)
        flags |= FileEventStream::itemCreated;
    if (mask & IN_DELETE)
        flags |= FileEventStream::itemRemoved;
    if (mask & (IN_MOVED_FROM | IN_MOVED_TO))
        flags |= FileEventStream::itemRenamed;
    if (mask & (IN_MODIFY | IN_CLOSE_WRITE))
        flags |= FileEventStream::itemModified;
    if (flags != 0 && (mask & IN_ISDIR))
        flags |= FileEventStream::itemIsDirectory;
    return flags;
}

/// Whether other machines, or the program behind the file system, change files unseen.
bool isRemoteType(decltype(statfs::f_type) type)
{
    constexpr std::array<quint32, 12> remote{NFS_SUPER_MAGIC,
                                             SMB_SUPER_MAGIC,
                                             CIFS_SUPER_MAGIC,
                                             SMB2_SUPER_MAGIC,
                                             AFS_SUPER_MAGIC,
                                             CODA_SUPER_MAGIC,
                                             CEPH_SUPER_MAGIC,
                                             V9FS_MAGIC,
                                             FUSE_SUPER_MAGIC,
                                             AFS_FS_MAGIC,
                                             0x786F4256 /* folders of a virtual machine's host */,
                                             0x0BD00BD0 /* a cluster's */};
    return std::find(remote.begin(), remote.end(), static_cast<quint32>(type)) != remote.end();
}

} // namespace

std::unique_ptr<FileEventStream> FileEventStream::local(const Request& request)
{
    static InotifyCalls calls;
    return InotifyFileEventStream::create(request, EventLoopScheduler::shared(), calls,
                                          FileSystem::local());
}

std::unique_ptr<FileEventStream> InotifyFileEventStream::create(const Request& request,
                                                                Scheduler& scheduler,
                                                                InotifyCalls& calls,
                                                                FileSystem& files)
{
    const int descriptor = calls.open();
    if (descriptor < 0)
        return nullptr;
    return std::unique_ptr<FileEventStream>(
        new InotifyFileEventStream(request, scheduler, calls, files, descriptor));
}

InotifyFileEventStream::InotifyFileEventStream(Request wanted, Scheduler& timing,
                                               InotifyCalls& systemCalls, FileSystem& fileSystem,
                                               int openDescriptor)
    : request(std::move(wanted)), nativeFolder(request.folder.toUtf8()), scheduler(timing),
      calls(systemCalls), files(fileSystem), descriptor(openDescriptor),
      mountTable(calls.openMountTable())
{
}

InotifyFileEventStream::~InotifyFileEventStream()
{
    InotifyFileEventStream::stop();
    calls.close(descriptor);
    if (mountTable >= 0)
        calls.close(mountTable);
}

bool InotifyFileEventStream::start()
{
    bool isStarted = false;
    SerialQueue::runAndWait(*request.queue, [&] {
        anchor = std::make_unique<QObject>();
        isStarted = arm();
        if (!isStarted && (errno == ENOENT || errno == ENOTDIR)) {
            rearm();
            isStarted = true;
        }
        if (isStarted)
            listen();
        else
            anchor.reset();
    });
    return isStarted;
}

void InotifyFileEventStream::stop()
{
    SerialQueue::runAndWait(*request.queue, [this] {
        if (!anchor)
            return;
        disarm();
        anchor.reset();
        isCooling = false;
        isLookDue = false;
        paths.clear();
        flags.clear();
        positions.clear();
    });
}

void InotifyFileEventStream::listen()
{
    const auto* events = new QSocketNotifier(descriptor, QSocketNotifier::Read, anchor.get());
    QObject::connect(events, &QSocketNotifier::activated, anchor.get(), [this] { readEvents(); });
    if (mountTable < 0)
        return;
    // The system tells on this file that something was mounted or unmounted.
    const auto* mounts = new QSocketNotifier(mountTable, QSocketNotifier::Exception, anchor.get());
    QObject::connect(mounts, &QSocketNotifier::activated, anchor.get(), [this] {
        if (folderWatch >= 0)
            rearmIfReplaced();
    });
}

// The watch

/// Watches the folder that stands at the path. False with errno set when there is none.
bool InotifyFileEventStream::arm()
{
    constexpr int attempts = 3;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        watchTheWay();
        const std::optional<Identity> before = identity();
        folderWatch = calls.addWatch(descriptor, nativeFolder.constData(), folderEvents);
        if (folderWatch < 0) {
            const int reason = errno;
            disarm();
            errno = reason;
            return false;
        }
        watched = identity();
        if (watched && watched == before) {
            wayWatches.remove(folderWatch);
            if (isRemote())
                beginLooking();
            return true;
        }
        disarm(); // another folder took its place just then
    }
    errno = ENOENT;
    return false;
}

void InotifyFileEventStream::disarm()
{
    if (folderWatch >= 0)
        calls.removeWatch(descriptor, folderWatch);
    for (const int watch : std::as_const(wayWatches))
        calls.removeWatch(descriptor, watch);
    folderWatch = -1;
    wayWatches.clear();
    watched.reset();
    look.reset();
}

/// Watches whatever the path may come to lead elsewhere by: the folders above and the links, which
/// may lead to further ones.
void InotifyFileEventStream::watchTheWay()
{
    constexpr int mostLinks = 40; // as the system has it
    int links = 0;
    QByteArrayList ahead = nativeFolder.split('/');
    QByteArray path; // without links, as far as it has come
    while (!ahead.isEmpty()) {
        const QByteArray name = ahead.takeFirst();
        if (name.isEmpty() || name == ".")
            continue;
        if (name == "..") {
            path.truncate(std::max<qsizetype>(path.lastIndexOf('/'), 0));
            continue;
        }
        const QByteArray next = path + '/' + name;
        const std::optional<QByteArray> target = linkTarget(next);
        if (!target) {
            path = next;
            continue;
        }
        if (++links > mostLinks)
            return;
        watchWithFoldersAbove(next);
        if (target->startsWith('/'))
            path.clear();
        ahead = target->split('/') + ahead;
    }
    watchWithFoldersAbove(path);
}

void InotifyFileEventStream::watchWithFoldersAbove(const QByteArray& path)
{
    watchOnTheWay(path, wayEvents);
    // What is removed while somebody has it open is told of by its parent alone.
    uint32_t events = wayEvents | IN_DELETE;
    for (QByteArray above = path.left(path.lastIndexOf('/')); !above.isEmpty();
         above.truncate(above.lastIndexOf('/'))) {
        watchOnTheWay(above, events);
        events = wayEvents;
    }
}

void InotifyFileEventStream::watchOnTheWay(const QByteArray& path, uint32_t events)
{
    const int added = calls.addWatch(descriptor, path.constData(), events);
    // What may not be watched is left out.
    if (added >= 0)
        wayWatches.insert(added);
}

/// Where the link at the path leads; nothing when there is no link.
std::optional<QByteArray> InotifyFileEventStream::linkTarget(const QByteArray& path)
{
    std::array<char, PATH_MAX> target{};
    const ssize_t length = calls.readLink(path.constData(), target.data(), target.size());
    return length < 0 ? std::nullopt : std::optional(QByteArray(target.data(), length));
}

/// Looks for the folder at the path until it is there, and tells that it may hold anything now.
void InotifyFileEventStream::rearm()
{
    disarm();
    isLost = false;
    if (!arm()) {
        scheduler.after(searchInterval, anchor.get(), [this] { rearm(); });
        return;
    }
    add(request.folder, itemCreated);
    if (!isCooling)
        deliver();
}

void InotifyFileEventStream::rearmIfReplaced()
{
    if (identity() != watched)
        rearm();
}

std::optional<InotifyFileEventStream::Identity> InotifyFileEventStream::identity()
{
    struct ::stat status {};
    if (calls.stat(nativeFolder.constData(), &status) != 0)
        return std::nullopt;
    return Identity(status.st_dev, status.st_ino);
}

// The remote folder

bool InotifyFileEventStream::isRemote()
{
    struct ::statfs system {};
    return calls.statfs(nativeFolder.constData(), &system) == 0 && isRemoteType(system.f_type);
}

void InotifyFileEventStream::beginLooking()
{
    log(u"FileEventStream",
        QString(u"网络文件系统，其他设备的变化可能延迟或收不到 - " % request.folder));
    look.emplace(request.folder, files);
    if (!isLookDue)
        lookAfterAWhile();
}

void InotifyFileEventStream::lookAfterAWhile()
{
    isLookDue = true;
    scheduler.after(lookInterval, anchor.get(), [this] {
        isLookDue = false;
        if (!look)
            return;
        if (identity() != watched)
            return rearm();
        lookAfterAWhile();
        for (const QString& name : look->changedNames())
            add(request.folder % u'/' % name, itemModified);
        if (!paths.isEmpty() && !isCooling)
            deliver();
    });
}

// The events

void InotifyFileEventStream::readEvents()
{
    alignas(struct ::inotify_event) std::array<char, 65536> buffer;
    bool isReplaced = false;
    for (;;) {
        const ssize_t length = calls.read(descriptor, buffer.data(), buffer.size());
        if (length < 0 && errno == EINTR)
            continue;
        if (length <= 0)
            break;
        const char* next = buffer.data();
        while (next < buffer.data() + length) {
            struct ::inotify_event event {};
            std::memcpy(&event, next, sizeof event);
            take(event, next + sizeof event);
            next += sizeof event + event.len;
        }
        isReplaced = isReplaced || isLost;
    }
    if (isReplaced)
        rearm();
    if (!paths.isEmpty() && !isCooling)
        deliver();
}

void InotifyFileEventStream::take(const struct ::inotify_event& event, const char* name)
{
    if (event.mask & IN_Q_OVERFLOW) {
        add(request.folder, itemModified);
        isLost = isLost || identity() != watched;
        return;
    }
    const bool isOfFolder = folderWatch >= 0 && event.wd == folderWatch;
    if (!isOfFolder && !wayWatches.contains(event.wd))
        return; // of a watch that was given up
    if (event.mask & (IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED))
        isLost = true;
    else if (!isOfFolder)
        isLost = isLost || identity() != watched;
    else if (const quint32 changes = flagsOf(event.mask); changes != 0) {
        const QString fileName = QString::fromUtf8(name);
        add(request.folder % u'/' % fileName, changes);
        if (look)
            look->accept(fileName);
    }
}

/// Puts an event into the next batch, in which each path stands once.
void InotifyFileEventStream::add(const QString& path, quint32 changes)
{
    const std::pair key(path, (changes & itemIsDirectory) != 0);
    const auto known = positions.constFind(key);
    if (known != positions.cend()) {
        flags[*known] |= changes;
        return;
    }
    positions.insert(key, paths.size());
    paths.append(path);
    flags.append(changes);
}

void InotifyFileEventStream::deliver()
{
    isCooling = true;
    scheduler.after(request.latency, anchor.get(), [this] {
        isCooling = false;
        if (!paths.isEmpty())
            deliver();
    });
    positions.clear();
    request.callback(std::exchange(paths, {}), std::exchange(flags, {}));
}

} // namespace vellumry
