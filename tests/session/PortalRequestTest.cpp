#include "session/PortalRequest.h"

#include "session/PrivateBus.h"
#include "support/Eventually.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QPointer>
#include <gtest/gtest.h>

#include <memory>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;

const QString questions = u"org.vellumry.Questions"_s;

/// A portal of one method, which a test answers by hand.
class QuestionPortal : public QDBusVirtualObject {
public:
    explicit QuestionPortal(const QDBusConnection& bus) : connection(bus) {}

    [[nodiscard]] bool appear()
    {
        return connection.registerVirtualObject(portalPath, this, QDBusConnection::SubPath) &&
               connection.registerService(portalName);
    }

    void disappear() { connection.unregisterService(portalName); }

    /// As the bus does where a call has started the portal.
    void tellOfBeginning()
    {
        QDBusMessage message = QDBusMessage::createSignal(
            u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"NameOwnerChanged"_s);
        message << QString(portalName) << QString() << connection.baseService();
        connection.send(message);
    }

    [[nodiscard]] QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection&) override
    {
        if (message.member() == u"Close"_s) {
            closed.append(message.path());
            return true;
        }
        asked = message.arguments();
        options = qdbus_cast<QVariantMap>(asked.takeLast());
        const QString client = message.service().mid(1).replace(u'.', u'_');
        const QString agreed = options.value(u"handle_token"_s).toString();
        handle =
            portalPath + u"/request/%1/%2"_s.arg(client, ownToken.isEmpty() ? agreed : ownToken);
        if (isHasty)
            answer(0);
        connection.send(isRefusing
                            ? message.createErrorReply(u"org.vellumry.No"_s, u"never"_s)
                            : message.createReply(QVariant::fromValue(QDBusObjectPath(handle))));
        return true;
    }

    void answer(uint code, const QVariantMap& results = {})
    {
        QDBusMessage response =
            QDBusMessage::createSignal(handle, u"org.freedesktop.portal.Request"_s, u"Response"_s);
        response << code << results;
        connection.send(response);
    }

    bool isHasty = false;    ///< Answers before it tells the handle.
    bool isRefusing = false; ///< Answers with an error.
    QString ownToken;        ///< The name that it gives to requests by itself, as portals of old.
    QVariantList asked;      ///< The arguments of the last call,
    QVariantMap options;     ///< but for these.
    QString handle;
    QStringList closed;

private:
    QDBusConnection connection;
};

class PortalRequestTest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_FALSE(bus.address().isEmpty()) << qPrintable(bus.failure());
        portal = std::make_unique<QuestionPortal>(bus.connect());
        ASSERT_TRUE(portal->appear());
    }

    void call(const QString& name = portalName)
    {
        request = new PortalRequest(client, &owner);
        QObject::connect(request, &PortalRequest::answered, request,
                         [this](uint code, const QVariantMap& results) {
                             heard.append(
                                 u"%1 %2"_s.arg(code).arg(results.value(u"it"_s).toString()));
                         });
        QObject::connect(request, &PortalRequest::failed, request,
                         [this](const QString& reason) { heard.append(u"failed: "_s + reason); });
        request->call(name, questions, u"Ask"_s, {u"one"_s, 2}, {{u"three"_s, 3}});
    }
    [[nodiscard]] bool isAsked()
    {
        return eventually([this] { return !portal->handle.isEmpty(); });
    }
    [[nodiscard]] bool hears(const QStringList& lines)
    {
        return eventually([&] { return heard == lines; });
    }
    [[nodiscard]] bool isGone()
    {
        return eventually([this] { return request.isNull(); });
    }

    PrivateBus bus;
    QDBusConnection client = bus.connect();
    std::unique_ptr<QuestionPortal> portal;
    QObject owner;
    QPointer<PortalRequest> request;
    QStringList heard;
};

TEST_F(PortalRequestTest, AsksAndHearsTheAnswer)
{
    call();
    ASSERT_TRUE(isAsked());
    EXPECT_EQ(portal->asked, (QVariantList{u"one"_s, 2}));
    EXPECT_EQ(portal->options.value(u"three"_s), QVariant(3));
    EXPECT_TRUE(heard.isEmpty());
    portal->answer(PortalRequest::cancelled, {{u"it"_s, u"is late"_s}});
    EXPECT_TRUE(hears({u"1 is late"_s}));
    EXPECT_TRUE(isGone());
    EXPECT_TRUE(portal->closed.isEmpty()) << "it has ended by itself";
}

TEST_F(PortalRequestTest, ThePortalMayBeCalledByItsUniqueName)
{
    const QDBusConnection other = bus.connect();
    QuestionPortal nameless(other);
    ASSERT_TRUE(QDBusConnection(other).registerVirtualObject(portalPath, &nameless,
                                                             QDBusConnection::SubPath));
    call(other.baseService());
    ASSERT_TRUE(eventually([&] { return !nameless.handle.isEmpty(); }));
    nameless.answer(PortalRequest::granted, {{u"it"_s, u"is mine"_s}});
    EXPECT_TRUE(hears({u"0 is mine"_s}));
    EXPECT_TRUE(portal->handle.isEmpty());
}

TEST_F(PortalRequestTest, AnAnswerBeforeTheHandleIsHeard)
{
    portal->isHasty = true;
    call();
    EXPECT_TRUE(hears({u"0 "_s}));
    EXPECT_TRUE(isGone());
}

TEST_F(PortalRequestTest, HearsPortalsThatChooseTheHandle)
{
    portal->ownToken = u"mine"_s;
    call();
    ASSERT_TRUE(isAsked());
    // What is told before the handle has arrived is lost, to any program.
    EXPECT_TRUE(eventually([this] {
        portal->answer(PortalRequest::granted, {{u"it"_s, u"is there"_s}});
        return !heard.isEmpty();
    }));
    EXPECT_EQ(heard, QStringList{u"0 is there"_s}) << "once, also if it is told twice";
}

TEST_F(PortalRequestTest, AnErrorIsAFailure)
{
    portal->isRefusing = true;
    call();
    EXPECT_TRUE(hears({u"failed: never"_s}));
    EXPECT_TRUE(isGone());
    EXPECT_TRUE(portal->closed.isEmpty());
}

TEST_F(PortalRequestTest, APortalThatEndsIsAFailure)
{
    call();
    ASSERT_TRUE(isAsked());
    portal->disappear();
    EXPECT_TRUE(hears({u"failed: the portal has ended"_s}));
    EXPECT_TRUE(isGone());
}

TEST_F(PortalRequestTest, APortalThatHasJustBegunIsNoFailure)
{
    call();
    ASSERT_TRUE(isAsked());
    portal->tellOfBeginning();
    portal->answer(PortalRequest::granted, {{u"it"_s, u"is there"_s}});
    EXPECT_TRUE(hears({u"0 is there"_s}));
}

TEST_F(PortalRequestTest, ItsEndTakesTheQuestionBack)
{
    call();
    ASSERT_TRUE(isAsked());
    const QString handle = portal->handle;
    delete request;
    EXPECT_TRUE(eventually([&] { return portal->closed == QStringList{handle}; }));
    portal->answer(PortalRequest::granted);
    call();
    EXPECT_TRUE(eventually([&] { return portal->handle != handle; })) << "a token of its own";
    portal->answer(PortalRequest::cancelled);
    EXPECT_TRUE(hears({u"1 "_s})) << "of the second one alone";
}

TEST_F(PortalRequestTest, OneThatWasNeverMadeTakesNothingBack)
{
    {
        const PortalRequest unused(client);
    }
    call();
    ASSERT_TRUE(isAsked());
    EXPECT_TRUE(portal->closed.isEmpty());
}

} // namespace
} // namespace vellumry::test
