#include "platform/linux/PortalAppearance.h"

#include "core/BackgroundRunner.h"
#include "core/Log.h"
#include "session/PortalRequest.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <utility>

namespace vellumry {

namespace {

constexpr QStringView logName = u"PortalAppearance";

constexpr QLatin1StringView settingsInterface("org.freedesktop.portal.Settings");
constexpr QLatin1StringView appearanceGroup("org.freedesktop.appearance");
constexpr QLatin1StringView schemeKey("color-scheme");

/// The method of today, and the one that older portals have instead.
constexpr QLatin1StringView readOneMethod("ReadOne");
constexpr QLatin1StringView readMethod("Read");

void tellWhyNot(const QString& reason)
{
    log(logName, QStringLiteral("The desktop does not tell its color scheme: ") + reason);
}

} // namespace

PortalAppearance::PortalAppearance(ColorScheme schemeAtStart, BackgroundRunner& background,
                                   BusConnector connectToBus)
    : startScheme(schemeAtStart), scheme(schemeAtStart)
{
    background.run(
        [this, &background, owner = QPointer<QObject>(this), connect = std::move(connectToBus)] {
            background.onMain(owner, [this, bus = connect()] { follow(bus); });
        });
}

void PortalAppearance::follow(QDBusConnection bus)
{
    if (!bus.isConnected()) {
        tellWhyNot(bus.lastError().message());
        return;
    }
    // From any sender, since to follow the owner of a name would wait for the bus.
    bus.connect(QString(), portalPath, settingsInterface, QStringLiteral("SettingChanged"),
                {appearanceGroup, schemeKey}, QString(), this,
                SLOT(settingChanged(QString, QString, QDBusVariant)));
    ask(bus, readOneMethod);
}

void PortalAppearance::ask(const QDBusConnection& bus, const QString& method)
{
    QDBusMessage question =
        QDBusMessage::createMethodCall(portalName, portalPath, settingsInterface, method);
    question << QString(appearanceGroup) << QString(schemeKey);
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, bus, method, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<QDBusVariant> answer = *watcher;
        if (!answer.isError())
            take(answer.value());
        else if (answer.error().type() == QDBusError::UnknownMethod && method == readOneMethod)
            ask(bus, readMethod);
        else
            tellWhyNot(answer.error().message());
    });
}

void PortalAppearance::settingChanged(const QString&, const QString&, const QDBusVariant& value)
{
    take(value);
}

void PortalAppearance::take(const QDBusVariant& preference)
{
    // The older method wraps its answer twice.
    QVariant value = preference.variant();
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();

    constexpr uint noPreference = 0;
    constexpr uint prefersDark = 1;
    constexpr uint prefersLight = 2;
    const uint wanted = value.typeId() == QMetaType::UInt ? value.toUInt() : noPreference;
    ColorScheme wish = startScheme;
    if (wanted == prefersDark)
        wish = ColorScheme::dark;
    else if (wanted == prefersLight)
        wish = ColorScheme::light;
    if (wish == scheme)
        return;
    scheme = wish;
    Q_EMIT colorSchemeChanged();
}

} // namespace vellumry
