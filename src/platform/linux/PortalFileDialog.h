#pragma once

#include "platform/FileChooser.h"

#include <QDBusConnection>
#include <QVariantMap>

namespace vellumry {

/// One dialog of the portal, from the question to its answer; deletes itself with that.
class PortalFileDialog final : public QObject {
    Q_OBJECT

public:
    PortalFileDialog(const QDBusConnection& bus, FileChooser::Handlers handlers, QObject* owner);
    /// Takes a dialog that was not answered off the screen.
    ~PortalFileDialog() override;

    void show(const FileChooser::Request& request);

private Q_SLOTS:
    void responded(uint code, const QVariantMap& results);

private:
    void end(const std::function<void()>& handler);

    QDBusConnection connection;
    FileChooser::Handlers call;
    QString handle; ///< of the portal's request, by its agreed name
    bool isOpen = false;
};

} // namespace vellumry
