#include "platform/linux/PortalFileDialog.h"

#include "core/Log.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QUuid>

#include <utility>

namespace vellumry {

namespace {

/// A kind of files, in the words of the portal.
struct PortalFileFilter {
    struct Rule {
        uint type = 1; ///< by the MIME type
        QString mimeType;
    };
    QString name;
    QList<Rule> rules;
};

const QString dialogService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString dialogPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString chooser = QStringLiteral("org.freedesktop.portal.FileChooser");
const QString requestInterface = QStringLiteral("org.freedesktop.portal.Request");

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

} // namespace

PortalFileDialog::PortalFileDialog(const QDBusConnection& bus, FileChooser::Handlers handlers,
                                   QObject* owner)
    : QObject(owner), connection(bus), call(std::move(handlers))
{
}

PortalFileDialog::~PortalFileDialog()
{
    if (isOpen)
        connection.asyncCall(QDBusMessage::createMethodCall(dialogService, handle, requestInterface,
                                                            QStringLiteral("Close")));
}

void PortalFileDialog::show(const FileChooser::Request& request)
{
    const QString token = QStringLiteral("vellumry_") + QUuid::createUuid().toString(QUuid::Id128);
    const QString sender = connection.baseService().mid(1).replace(u'.', u'_');
    handle = dialogPath + QStringLiteral("/request/") + sender + u'/' + token;
    // Before the question: the answer may come right behind it.
    connection.connect(QString(), handle, requestInterface, QStringLiteral("Response"), this,
                       SLOT(responded(uint, QVariantMap)));

    const bool isSaving = request.kind == FileChooser::Kind::saveFile;
    QDBusMessage question = QDBusMessage::createMethodCall(dialogService, dialogPath, chooser,
                                                           isSaving ? QStringLiteral("SaveFile")
                                                                    : QStringLiteral("OpenFile"));
    QVariantMap options = optionsOf(request);
    options.insert(QStringLiteral("handle_token"), token);
    const QString parent = request.x11Window == 0
                               ? QString()
                               : QStringLiteral("x11:") + QString::number(request.x11Window, 16);
    question << parent << request.title << options;
    isOpen = true;
    auto* watcher = new QDBusPendingCallWatcher(connection.asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        if (!watcher->isError())
            return;
        log(u"PortalFileChooser",
            QStringLiteral("The desktop shows no dialog for files: ") + watcher->error().message());
        end(call.whenUnavailable);
    });
}

void PortalFileDialog::responded(uint code, const QVariantMap& results)
{
    const QStringList uris = results.value(QStringLiteral("uris")).toStringList();
    std::optional<QUrl> place;
    if (code == 0 && !uris.isEmpty())
        place = QUrl(uris.constFirst());
    end([this, place] { call.onAnswer(place); });
}

void PortalFileDialog::end(const std::function<void()>& handler)
{
    if (!std::exchange(isOpen, false))
        return;
    deleteLater();
    handler();
}

} // namespace vellumry
