#pragma once

#include "platform/FileChooser.h"

#include <QDBusConnection>

namespace vellumry {

class BackgroundRunner;

/// The dialogs of the desktop's portal, org.freedesktop.portal.FileChooser, which also work for a
/// program in a sandbox.
class PortalFileChooser final : public QObject, public FileChooser {
    Q_OBJECT

public:
    /// Connects to the bus of the user's session, which may take its time. Called on another
    /// thread.
    using BusConnector = std::function<QDBusConnection()>;

    /// `background` outlives this object.
    explicit PortalFileChooser(BackgroundRunner& background,
                               BusConnector connectToBus = &QDBusConnection::sessionBus);

    void ask(const Request& request, QObject& owner, Handlers handlers) override;

private:
    BackgroundRunner& runner;
    BusConnector connector;
};

} // namespace vellumry
