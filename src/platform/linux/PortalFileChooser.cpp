#include "platform/linux/PortalFileChooser.h"

#include "core/BackgroundRunner.h"
#include "core/Log.h"
#include "session/PortalRequest.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusMetaType>

#include <utility>

namespace vellumry {

namespace {

constexpr QStringView chooserName = u"PortalFileChooser";

/// A kind of files, in the words of the portal.
struct PortalFileFilter {
    struct Rule {
        uint type = 1; ///< by the MIME type
        QString mimeType;
    };
    QString name;
    QList<Rule> rules;
};

QDBusArgument& operator<<(QDBusArgument& out, const PortalFileFilter::Rule& rule)
{
    out.beginStructure();
    out << rule.type << rule.mimeType;
    out.endStructure();
    return out;
}

const QDBusArgument& operator>>(const QDBusArgument& in, PortalFileFilter::Rule& rule)
{
    in.beginStructure();
    in >> rule.type >> rule.mimeType;
    in.endStructure();
    return in;
}

QDBusArgument& operator<<(QDBusArgument& out, const PortalFileFilter& filter)
{
    out.beginStructure();
    out << filter.name << filter.rules;
    out.endStructure();
    return out;
}

const QDBusArgument& operator>>(const QDBusArgument& in, PortalFileFilter& filter)
{
    in.beginStructure();
    in >> filter.name >> filter.rules;
    in.endStructure();
    return in;
}

QVariantMap optionsOf(const FileChooser::Request& request)
{
    QVariantMap options;
    if (request.kind == FileChooser::Kind::folder)
        options.insert(QStringLiteral("directory"), true);
    if (request.kind == FileChooser::Kind::saveFile)
        options.insert(QStringLiteral("current_name"), request.fileName);
    if (!request.mimeType.isEmpty()) {
        qDBusRegisterMetaType<PortalFileFilter::Rule>();
        qDBusRegisterMetaType<QList<PortalFileFilter::Rule>>();
        qDBusRegisterMetaType<PortalFileFilter>();
        qDBusRegisterMetaType<QList<PortalFileFilter>>();
        options.insert(QStringLiteral("filters"),
                       QVariant::fromValue(QList<PortalFileFilter>{
                           {request.fileTypeName, {{1, request.mimeType}}}}));
    }
    return options;
}

/// The place that an answer names.
std::optional<QUrl> placeOf(uint code, const QVariantMap& results)
{
    const QStringList uris = results.value(QStringLiteral("uris")).toStringList();
    if (code != PortalRequest::granted || uris.isEmpty())
        return std::nullopt;
    return QUrl(uris.constFirst());
}

/// The dialog lasts until its answer, at most as long as `owner`.
void showDialog(const QDBusConnection& bus, const FileChooser::Request& request, QObject* owner,
                const FileChooser::Handlers& handlers)
{
    auto* dialog = new PortalRequest(bus, owner);
    QObject::connect(dialog, &PortalRequest::answered, dialog,
                     [answer = handlers.onAnswer](uint code, const QVariantMap& results) {
                         answer(placeOf(code, results));
                     });
    QObject::connect(dialog, &PortalRequest::failed, dialog,
                     [tell = handlers.whenUnavailable](const QString& reason) {
                         log(chooserName,
                             QStringLiteral("The desktop shows no dialog for files: ") + reason);
                         tell();
                     });
    const QString parent = request.x11Window == 0
                               ? QString()
                               : QStringLiteral("x11:") + QString::number(request.x11Window, 16);
    dialog->call(portalName, QStringLiteral("org.freedesktop.portal.FileChooser"),
                 request.kind == FileChooser::Kind::saveFile ? QStringLiteral("SaveFile")
                                                             : QStringLiteral("OpenFile"),
                 {parent, request.title}, optionsOf(request));
}

} // namespace

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
                showDialog(bus, request, asker, handlers);
                return;
            }
            log(chooserName, bus.lastError().message());
            handlers.whenUnavailable();
        });
    });
}

} // namespace vellumry
