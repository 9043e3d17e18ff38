#pragma once

#include "platform/FileViewer.h"

#include <QDBusConnection>
#include <QStringList>

#include <functional>

namespace vellumry {

class BackgroundRunner;

/// The file manager that answers to org.freedesktop.FileManager1 on the bus of the session; where
/// none does, whatever xdg-open starts for a folder.
class FreedesktopFileViewer final : public QObject, public FileViewer {
    Q_OBJECT

public:
    /// Connects to the bus of the user's session, which may take its time. Called on another
    /// thread.
    using BusConnector = std::function<QDBusConnection()>;
    /// Starts a program that outlives this one. False when it cannot be started.
    using ProgramStarter =
        std::function<bool(const QString& program, const QStringList& arguments)>;

    /// `background` outlives this object.
    explicit FreedesktopFileViewer(BackgroundRunner& background,
                                   BusConnector connectToBus = &QDBusConnection::sessionBus,
                                   ProgramStarter startProgram = &startDetached);

    void showFolder(const QString& path, const QPointer<QObject>& owner,
                    FailureHandler whenFailed) override;
    void showItem(const QString& path, const QPointer<QObject>& owner,
                  FailureHandler whenFailed) override;

private:
    /// What is to be shown, and how.
    struct Request {
        QString method;
        QString path;
        QString folder; ///< for a program that can only show folders
        QPointer<QObject> owner;
        FailureHandler whenFailed;
    };

    static bool startDetached(const QString& program, const QStringList& arguments);

    void show(const Request& request);
    void ask(const QDBusConnection& bus, const Request& request);
    void openFolder(const Request& request) const;
    static void fail(const Request& request, const QString& reason);

    BackgroundRunner& runner;
    BusConnector connector;
    ProgramStarter starter;
};

} // namespace vellumry
