#pragma once

#include "platform/Appearance.h"

#include <QDBusConnection>
#include <QDBusVariant>

#include <functional>

namespace vellumry {

class BackgroundRunner;

/// The desktop's wish as its settings portal tells it (color-scheme of org.freedesktop.appearance),
/// now and at each change. A desktop that has no such portal, no bus or no preference looks as the
/// program found it at the start. Nothing here waits: the answer arrives as a change.
class PortalAppearance final : public Appearance {
    Q_OBJECT

public:
    /// Connects to the bus of the user's session, which may take its time. Called on another
    /// thread.
    using BusConnector = std::function<QDBusConnection()>;

    /// `startScheme` stands as long as the desktop tells no other. `background` outlives this
    /// object.
    PortalAppearance(ColorScheme startScheme, BackgroundRunner& background,
                     BusConnector connectToBus = &QDBusConnection::sessionBus);

    [[nodiscard]] ColorScheme colorScheme() const override { return scheme; }

private Q_SLOTS:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    void follow(QDBusConnection bus);
    void ask(const QDBusConnection& bus, const QString& method);
    void take(const QDBusVariant& preference);

    const ColorScheme startScheme;
    ColorScheme scheme;
};

} // namespace vellumry
