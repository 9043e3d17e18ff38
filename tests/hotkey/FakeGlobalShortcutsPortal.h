#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <functional>
#include <optional>

namespace vellumry::test {

/// The portal for global shortcuts of a desktop, with a person in front of it who presses the keys
/// and answers the questions. One client, one session, one shortcut.
class FakeGlobalShortcutsPortal final : public QDBusVirtualObject {
public:
    explicit FakeGlobalShortcutsPortal(const QDBusConnection& bus) : connection(bus) {}
    ~FakeGlobalShortcutsPortal() override { vanish(); }

    /// Comes onto the bus. False when that fails.
    [[nodiscard]] bool appear();
    void vanish();

    // The kind of desktop it is

    std::optional<uint> version = 1;           ///< of the interface; none: there is no interface
    bool isSilent = false;                     ///< Whether calls stay without a reply.
    bool isNewer = false;                      ///< Whether it wants to know who a program is.
    bool choosesRequestPaths = false;          ///< As old portals do.
    bool tellsSessionAsPath = false;           ///< Rather than as a text.
    bool isThinking = false;                   ///< Whether requests wait for answerRequest().
    uint answerToSession = 0;                  ///< The code of the response.
    uint answerToBinding = 0;                  ///< The same.
    bool bindsWithSession = false;             ///< As KDE Plasma 5.27 does, and in no other way.
    bool takesShortcut = true;                 ///< Or leaves it out of what it has bound.
    QString trigger = QStringLiteral("Alt+T"); ///< What the person has chosen.

    // The person and the desktop

    void press(quint64 time, const QString& token = {});
    void pressOf(const QString& shortcut, const QString& ofSession);
    void release(quint64 time);
    void changeTrigger(const QString& newTrigger);
    void removeShortcut();
    void closeSession();
    void answerRequest(); ///< the last one; again, if it was answered already

    // What came

    QStringList calls;
    QString session; ///< The one that is open, or empty.
    QString id;      ///< The bound shortcut's.
    std::function<void(const QString& call)> onCall;

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override;

private:
    void note(const QString& call);
    void noteShortcut(const QString& call, const std::pair<QString, QVariantMap>& shortcut);
    void fail(const QDBusMessage& message, const QString& error);
    void respond(const QDBusMessage& message, const QVariantMap& options, uint code,
                 const QVariantMap& results);
    void createSession(const QDBusMessage& message);
    void bindShortcuts(const QDBusMessage& message);
    void listShortcuts(const QDBusMessage& message);
    [[nodiscard]] QVariant shortcuts() const;
    void emitSignal(const QString& interface, const QString& path, const QString& name,
                    const QVariantList& arguments);

    QDBusConnection connection;
    QString client;
    QString description;
    std::function<void()> pending;
};

} // namespace vellumry::test
