// A status area without a picture: takes the items of programs, prints their menus, and clicks on
// the entries that it is told on standard input.
//
//   item SERVICE      an item has come
//   entry LABEL       one entry of its menu
//   ready             the area is there

#include "status_area.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusVariant>
#include <QSocketNotifier>
#include <QTextStream>

#include <cstdio>

namespace {

const QString watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString menuInterface = QStringLiteral("com.canonical.dbusmenu");

void print(const QString& line)
{
    std::printf("%s\n", qPrintable(line));
    std::fflush(stdout);
}

} // namespace

void StatusArea::click(const QString& label)
{
    QDBusMessage event = call(QStringLiteral("Event"));
    event << entries.value(label) << QStringLiteral("clicked")
          << QVariant::fromValue(QDBusVariant(QString())) << 0U;
    QDBusConnection::sessionBus().call(event);
}

void StatusArea::RegisterStatusNotifierItem(const QString&)
{
    service = message().service();
    print(QStringLiteral("item ") + service);
    QMetaObject::invokeMethod(this, &StatusArea::readMenu, Qt::QueuedConnection);
}
QDBusMessage StatusArea::call(const QString& method) const
{
    return QDBusMessage::createMethodCall(service, QStringLiteral("/MenuBar"), menuInterface,
                                          method);
}

void StatusArea::readMenu()
{
    QDBusMessage question = call(QStringLiteral("GetLayout"));
    question << 0 << -1 << QStringList();
    const QDBusMessage answer = QDBusConnection::sessionBus().call(question);
    if (answer.type() != QDBusMessage::ReplyMessage) {
        print(QStringLiteral("no menu: ") + answer.errorMessage());
        return;
    }
    readEntry(answer.arguments().at(1).value<QDBusArgument>());
}

void StatusArea::readEntry(const QDBusArgument& layout)
{
    int id = 0;
    QVariantMap properties;
    layout.beginStructure();
    layout >> id >> properties;
    const QString label = properties.value(QStringLiteral("label")).toString();
    if (!label.isEmpty()) {
        entries.insert(label, id);
        print(QStringLiteral("entry ") + label);
    }
    layout.beginArray();
    while (!layout.atEnd()) {
        QDBusVariant child;
        layout >> child;
        readEntry(child.variant().value<QDBusArgument>());
    }
    layout.endArray();
    layout.endStructure();
}

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    StatusArea area;
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.registerObject(QStringLiteral("/StatusNotifierWatcher"), &area,
                            QDBusConnection::ExportAllContents) ||
        !bus.registerService(watcherName)) {
        std::fprintf(stderr, "status_area: %s\n", qPrintable(bus.lastError().message()));
        return 1;
    }
    QTextStream input(stdin);
    const QSocketNotifier labels(0, QSocketNotifier::Read);
    QObject::connect(&labels, &QSocketNotifier::activated, &application, [&] {
        const QString label = input.readLine();
        if (label.isNull())
            QCoreApplication::quit();
        else
            area.click(label);
    });
    print(QStringLiteral("ready"));
    return QCoreApplication::exec();
}
