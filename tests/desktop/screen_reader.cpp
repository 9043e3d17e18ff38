// A screen reader without a voice, and the registry that programs look for before they report to
// one: it tells what the last program shows, by names and places. Standard input has the title of
// the window to look at on each line, or nothing for all windows; the answer is one line.
//
//   ready             programs can report
//   seen [...]        all objects that are on the screen, as JSON

#include "screen_reader.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QJsonDocument>
#include <QJsonObject>
#include <QList>
#include <QRect>
#include <QSocketNotifier>
#include <QTextStream>

#include <array>
#include <cstdio>
#include <utility>

namespace {

const QString root = QStringLiteral("/org/a11y/atspi/accessible/root");
const QString accessibleInterface = QStringLiteral("org.a11y.atspi.Accessible");

/// Lists of rows can be long; nobody looks at all rows of such a list.
constexpr int mostChildren = 300;

/// The states that a test asks for, by their bits.
constexpr unsigned showingState = 25;
constexpr std::array<std::pair<unsigned, const char*>, 5> toldStates{
    {{1, "active"}, {4, "checked"}, {12, "focused"}, {23, "selected"}, {24, "enabled"}}};

void print(const QString& line)
{
    std::printf("%s\n", qUtf8Printable(line));
    std::fflush(stdout);
}

/// Where an object is: the bus name of its program, and its path there.
struct Reference {
    QString service;
    QDBusObjectPath path;
};

QDBusArgument& operator<<(QDBusArgument& argument, const Reference& reference)
{
    argument.beginStructure();
    argument << reference.service << reference.path;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, Reference& reference)
{
    argument.beginStructure();
    argument >> reference.service >> reference.path;
    argument.endStructure();
    return argument;
}

QDBusPendingCall ask(const QString& service, const QString& path, const QString& interface,
                     const QString& method, const QVariantList& arguments = {})
{
    QDBusMessage question = QDBusMessage::createMethodCall(service, path, interface, method);
    question.setArguments(arguments);
    return QDBusConnection::sessionBus().asyncCall(question);
}

/// One object: all questions about it are on their way before the first answer is read.
class Object {
public:
    Object(const QString& service, const QString& objectPath)
        : path(objectPath), name(property(service, QStringLiteral("Name"))),
          childCount(property(service, QStringLiteral("ChildCount"))),
          role(ask(service, path, accessibleInterface, QStringLiteral("GetRoleName"))),
          states(ask(service, path, accessibleInterface, QStringLiteral("GetState"))),
          place(ask(service, path, QStringLiteral("org.a11y.atspi.Component"),
                    QStringLiteral("GetExtents"), {0U})),
          text(ask(service, path, QStringLiteral("org.a11y.atspi.Text"), QStringLiteral("GetText"),
                   {0, -1}))
    {
    }

    [[nodiscard]] bool isShown() { return hasState(showingState); }
    [[nodiscard]] QString title() { return value(name).toString(); }
    [[nodiscard]] QString kind() { return answered(role); }
    [[nodiscard]] bool hasFewChildren()
    {
        const int count = value(childCount).toInt();
        return count > 0 && count <= mostChildren;
    }

    [[nodiscard]] QJsonObject record()
    {
        place.waitForFinished();
        QRect area;
        if (!place.isError()) {
            int x = 0;
            int y = 0;
            int width = 0;
            int height = 0;
            const auto argument = place.reply().arguments().at(0).value<QDBusArgument>();
            argument.beginStructure();
            argument >> x >> y >> width >> height;
            argument.endStructure();
            area = {x, y, width, height};
        }
        QJsonArray held;
        for (const auto& [bit, word] : toldStates) {
            if (hasState(bit))
                held.append(QString::fromLatin1(word));
        }
        return {
            {QStringLiteral("name"), title()},
            {QStringLiteral("role"), kind()},
            {QStringLiteral("states"), held},
            {QStringLiteral("text"), answered(text)},
            {QStringLiteral("place"), QJsonArray{area.x(), area.y(), area.width(), area.height()}}};
    }

    const QString path;

private:
    [[nodiscard]] QDBusPendingCall property(const QString& service,
                                            const QString& propertyName) const
    {
        return ask(service, path, QStringLiteral("org.freedesktop.DBus.Properties"),
                   QStringLiteral("Get"), {accessibleInterface, propertyName});
    }

    [[nodiscard]] static QVariant value(const QDBusPendingCall& call)
    {
        return QDBusPendingReply<QDBusVariant>(call).value().variant();
    }

    /// Empty where the object has no such thing to tell.
    [[nodiscard]] static QString answered(const QDBusPendingCall& call)
    {
        QDBusPendingReply<QString> reply = call;
        reply.waitForFinished();
        return reply.isValid() ? reply.value() : QString();
    }

    [[nodiscard]] bool hasState(unsigned bit)
    {
        const QList<unsigned> bits = QDBusPendingReply<QList<unsigned>>(states).value();
        return bits.size() > qsizetype(bit / 32) && ((bits.at(bit / 32) >> bit % 32) & 1U) != 0;
    }

    QDBusPendingCall name;
    QDBusPendingCall childCount;
    QDBusPendingCall role;
    QDBusPendingCall states;
    QDBusPendingCall place;
    QDBusPendingCall text;
};

/// Asks for the children of all these objects at once.
QList<QDBusPendingCall> askForChildren(const QString& service, const QStringList& paths)
{
    QList<QDBusPendingCall> calls;
    for (const QString& path : paths)
        calls.append(ask(service, path, accessibleInterface, QStringLiteral("GetChildren")));
    return calls;
}

} // namespace

Q_DECLARE_METATYPE(Reference)

bool ScreenReader::handleMessage(const QDBusMessage& message, const QDBusConnection& connection)
{
    QVariant answer;
    if (message.member() == QLatin1String("Embed")) {
        program = message.service();
        answer = QVariant::fromValue(Reference{connection.baseService(), QDBusObjectPath(root)});
    } else if (message.member() == QLatin1String("GetAddress")) {
        answer = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    } else if (message.member() == QLatin1String("Get")) {
        answer = QVariant::fromValue(QDBusVariant(true)); // of the states that there are, all hold
    } else {
        return false;
    }
    return connection.send(message.createReply(answer));
}

QJsonArray ScreenReader::look(const QString& window) const
{
    QJsonArray seen;
    QStringList parents{root};
    QList<int> positions{-1};
    for (bool isTop = true; !parents.isEmpty(); isTop = false) {
        QList<QDBusPendingCall> answers = askForChildren(program, parents);
        std::vector<std::pair<Object, int>> level;
        for (qsizetype i = 0; i < answers.size(); ++i) {
            const auto children = QDBusPendingReply<QList<Reference>>(answers[i]).value();
            for (const Reference& child : children)
                level.emplace_back(Object(program, child.path.path()), positions.at(i));
        }
        parents.clear();
        positions.clear();
        for (auto& [object, parent] : level) {
            if (!object.isShown() || (isTop && !window.isEmpty() && object.title() != window))
                continue;
            QJsonObject record = object.record();
            record.insert(QStringLiteral("parent"), parent);
            if (object.hasFewChildren()) {
                parents.append(object.path);
                positions.append(int(seen.size()));
            }
            seen.append(record);
        }
    }
    return seen;
}

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    qDBusRegisterMetaType<Reference>();
    qDBusRegisterMetaType<QList<Reference>>();
    ScreenReader reader;
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.registerVirtualObject(root, &reader) ||
        !bus.registerVirtualObject(QStringLiteral("/org/a11y/bus"), &reader) ||
        !bus.registerService(QStringLiteral("org.a11y.atspi.Registry")) ||
        !bus.registerService(QStringLiteral("org.a11y.Bus"))) {
        std::fprintf(stderr, "screen_reader: %s\n", qPrintable(bus.lastError().message()));
        return 1;
    }
    QTextStream input(stdin);
    const QSocketNotifier titles(0, QSocketNotifier::Read);
    QObject::connect(&titles, &QSocketNotifier::activated, &application, [&] {
        const QString title = input.readLine();
        if (title.isNull())
            QCoreApplication::quit();
        else
            print(QStringLiteral("seen ") +
                  QString::fromUtf8(
                      QJsonDocument(reader.look(title)).toJson(QJsonDocument::Compact)));
    });
    print(QStringLiteral("ready"));
    return QCoreApplication::exec();
}
