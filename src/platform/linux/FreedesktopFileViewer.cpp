#include "platform/linux/FreedesktopFileViewer.h"

#include "core/BackgroundRunner.h"
#include "core/Log.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFileInfo>
#include <QProcess>
#include <QUrl>

#include <utility>

namespace vellumry {

namespace {

constexpr QLatin1StringView managerService("org.freedesktop.FileManager1");
constexpr QLatin1StringView managerPath("/org/freedesktop/FileManager1");
constexpr QLatin1StringView opener("xdg-open");

} // namespace

FreedesktopFileViewer::FreedesktopFileViewer(BackgroundRunner& background,
                                             BusConnector connectToBus, ProgramStarter startProgram)
    : runner(background), connector(std::move(connectToBus)), starter(std::move(startProgram))
{
}

bool FreedesktopFileViewer::startDetached(const QString& program, const QStringList& arguments)
{
    return QProcess::startDetached(program, arguments);
}

void FreedesktopFileViewer::showFolder(const QString& path, const QPointer<QObject>& owner,
                                       FailureHandler whenFailed)
{
    show({.method = QStringLiteral("ShowFolders"),
          .path = path,
          .folder = path,
          .owner = owner,
          .whenFailed = std::move(whenFailed)});
}

void FreedesktopFileViewer::showItem(const QString& path, const QPointer<QObject>& owner,
                                     FailureHandler whenFailed)
{
    show({.method = QStringLiteral("ShowItems"),
          .path = path,
          .folder = QFileInfo(path).path(),
          .owner = owner,
          .whenFailed = std::move(whenFailed)});
}

void FreedesktopFileViewer::show(const Request& request)
{
    // A folder may be on a disk that sleeps, and the bus may be slow.
    runner.run([this, &background = runner, viewer = QPointer<QObject>(this), connect = connector,
                request] {
        // File managers show some other folder, or a message of their own, or nothing.
        if (!QFileInfo::exists(request.path)) {
            background.onMain(viewer, [request] {
                fail(request, QStringLiteral("there is no “%1”").arg(request.path));
            });
            return;
        }
        background.onMain(viewer, [this, bus = connect(), request] {
            if (bus.isConnected())
                ask(bus, request);
            else
                openFolder(request);
        });
    });
}

void FreedesktopFileViewer::ask(const QDBusConnection& bus, const Request& request)
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(managerService, managerPath, managerService, request.method);
    const QString startupId;
    call << QStringList{QUrl::fromLocalFile(request.path).toString(QUrl::FullyEncoded)}
         << startupId;
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, request, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<> answer = *watcher;
        if (answer.isError())
            openFolder(request);
    });
}

void FreedesktopFileViewer::openFolder(const Request& request) const
{
    if (!starter(opener, {request.folder}))
        fail(request,
             QStringLiteral("no file manager answers, and %1 cannot be started").arg(opener));
}

void FreedesktopFileViewer::fail(const Request& request, const QString& reason)
{
    log(u"FreedesktopFileViewer",
        QStringLiteral("“%1” cannot be shown: %2").arg(request.path, reason));
    if (request.owner && request.whenFailed)
        request.whenFailed(reason);
}

} // namespace vellumry
