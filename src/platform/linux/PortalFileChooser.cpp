#include "platform/linux/PortalFileChooser.h"

#include "core/BackgroundRunner.h"
#include "core/Log.h"
#include "platform/linux/PortalFileDialog.h"

#include <QDBusError>

#include <utility>

namespace vellumry {

PortalFileChooser::PortalFileChooser(BackgroundRunner& background, BusConnector connectToBus)
    : runner(background), connector(std::move(connectToBus))
{
}

void PortalFileChooser::ask(const Request& request, QObject& owner, Handlers handlers)
{
    runner.run([&background = runner, connect = connector, asker = QPointer<QObject>(&owner),
                request, handlers = std::move(handlers)] {
        background.onMain(asker, [bus = connect(), asker, request, handlers] {
            if (bus.isConnected()) {
                (new PortalFileDialog(bus, handlers, asker))->show(request);
                return;
            }
            log(u"PortalFileChooser", bus.lastError().message());
            handlers.whenUnavailable();
        });
    });
}

} // namespace vellumry
