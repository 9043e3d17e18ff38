// The portal for global shortcuts of a desktop without one. Prints what programs ask of it:
//
//   ready             the portal is there
//   call WHAT         a call has come
//
// and does what it is told on standard input:
//
//   press [TOKEN]     the shortcut's keys are pressed; prints "pressed NANOSECONDS" of the
//   monotonic
//                     clock just before the signal goes out
//   trigger TEXT      the person chooses other keys

#include "hotkey/FakeGlobalShortcutsPortal.h"

#include <QCoreApplication>
#include <QDBusError>
#include <QSocketNotifier>
#include <QTextStream>

#include <chrono>
#include <cstdio>

namespace {

void print(const QString& line)
{
    std::printf("%s\n", qPrintable(line));
    std::fflush(stdout);
}

void obey(vellumry::test::FakeGlobalShortcutsPortal& portal, const QString& line)
{
    const QString command = line.section(u' ', 0, 0);
    const QString rest = line.section(u' ', 1);
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    if (command == QStringLiteral("press")) {
        print(QStringLiteral("pressed %1")
                  .arg(std::chrono::duration_cast<std::chrono::nanoseconds>(now).count()));
        portal.press(quint64(std::chrono::duration_cast<std::chrono::milliseconds>(now).count()),
                     rest);
    } else if (command == QStringLiteral("trigger")) {
        portal.changeTrigger(rest);
    }
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QDBusConnection bus = QDBusConnection::sessionBus();
    vellumry::test::FakeGlobalShortcutsPortal portal(bus);
    portal.onCall = [](const QString& call) { print(QStringLiteral("call ") + call); };
    if (!portal.appear()) {
        std::fprintf(stderr, "global_shortcuts_portal: %s\n",
                     qPrintable(bus.lastError().message()));
        return 1;
    }
    QTextStream input(stdin);
    const QSocketNotifier lines(0, QSocketNotifier::Read);
    QObject::connect(&lines, &QSocketNotifier::activated, &application, [&] {
        const QString line = input.readLine();
        if (line.isNull())
            QCoreApplication::quit();
        else
            obey(portal, line);
    });
    print(QStringLiteral("ready"));
    return QCoreApplication::exec();
}
