// The portal for global shortcuts of a desktop without one. Prints what programs ask of it:
//
//   ready             the portal is there
//   call WHAT         a call has come
//
// and does what it is told on standard input:
//
//   press [TOKEN]     the shortcut's keys are pressed; prints "pressed MICROSECONDS", the time of
//   day
//                     just before the signal goes out
//   trigger TEXT      the person chooses other keys

#include "hotkey/FakeGlobalShortcutsPortal.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QDBusError>
#include <QSocketNotifier>

#include <array>
#include <chrono>
#include <cstdio>
#include <unistd.h>

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
    using namespace std::chrono;
    const auto now = system_clock::now().time_since_epoch();
    if (command == QStringLiteral("press")) {
        print(QStringLiteral("pressed %1").arg(duration_cast<microseconds>(now).count()));
        portal.press(quint64(duration_cast<milliseconds>(now).count()), rest);
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
    QByteArray input;
    const QSocketNotifier lines(0, QSocketNotifier::Read);
    QObject::connect(&lines, &QSocketNotifier::activated, &application, [&] {
        std::array<char, 1024> piece{};
        const ssize_t size = read(0, piece.data(), piece.size());
        if (size <= 0)
            QCoreApplication::quit();
        else
            input.append(piece.data(), size);
        for (qsizetype end = input.indexOf('\n'); end >= 0; end = input.indexOf('\n')) {
            obey(portal, QString::fromUtf8(input.first(end)));
            input.remove(0, end + 1);
        }
    });
    print(QStringLiteral("ready"));
    return QCoreApplication::exec();
}
