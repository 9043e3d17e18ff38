#include "platform/linux/PortalFileChooser.h"

#include "platform/FakeFileChooserPortal.h"
#include "session/PrivateBus.h"
#include "support/Eventually.h"
#include "support/LogCapture.h"
#include "support/ManualBackgroundRunner.h"

#include <QDBusArgument>
#include <gtest/gtest.h>

#include <memory>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;
using Kind = FileChooser::Kind;

class PortalFileChooserTest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_FALSE(bus.address().isEmpty()) << qPrintable(bus.failure());
        portal = std::make_unique<FakeFileChooserPortal>(bus.connect());
    }

    void ask(const FileChooser::Request& request)
    {
        chooser.ask(request, *owner,
                    {.onAnswer =
                         [this](const std::optional<QUrl>& place) {
                             answers.append(place ? place->toString() : u"nothing"_s);
                         },
                     .whenUnavailable = [this] { answers.append(u"unavailable"_s); }});
        runner.runWork();
        runner.runActions();
    }

    /// Until the dialog is up.
    [[nodiscard]] bool isUp()
    {
        return eventually([this] { return !portal->method.isEmpty(); });
    }
    [[nodiscard]] bool isAnswered()
    {
        return eventually([this] { return !answers.isEmpty(); });
    }

    LogCapture log;
    PrivateBus bus;
    ManualBackgroundRunner runner;
    std::unique_ptr<FakeFileChooserPortal> portal;
    bool isConnecting = true;
    PortalFileChooser chooser{runner, [this] {
                                  return isConnecting ? bus.connect()
                                                      : QDBusConnection::connectToBus(
                                                            u"unix:path=/nowhere/at/all"_s,
                                                            u"no file chooser"_s);
                              }};
    std::unique_ptr<QObject> owner = std::make_unique<QObject>();
    QStringList answers;
};

TEST_F(PortalFileChooserTest, AsksForAFolder)
{
    ASSERT_TRUE(portal->appear());
    ask({.kind = Kind::folder, .title = u"Choose Folder"_s, .x11Window = 0x2a0001});
    ASSERT_TRUE(isUp());
    EXPECT_EQ(portal->method, u"OpenFile"_s);
    EXPECT_EQ(portal->parentWindow, u"x11:2a0001"_s);
    EXPECT_EQ(portal->title, u"Choose Folder"_s);
    EXPECT_EQ(portal->options.value(u"directory"_s), QVariant(true));
    EXPECT_FALSE(portal->options.contains(u"filters"_s));
    portal->answer(0, {u"file:///home/tester/a%20b"_s});
    ASSERT_TRUE(isAnswered());
    EXPECT_EQ(answers, QStringList{u"file:///home/tester/a b"_s});
}

TEST_F(PortalFileChooserTest, AsksForAFileToOpen)
{
    ASSERT_TRUE(portal->appear());
    ask({.kind = Kind::openFile,
         .title = u"Import"_s,
         .mimeType = u"application/json"_s,
         .fileTypeName = u"JSON"_s});
    ASSERT_TRUE(isUp());
    EXPECT_EQ(portal->method, u"OpenFile"_s);
    EXPECT_EQ(portal->parentWindow, QString()) << "where windows have no number";
    EXPECT_FALSE(portal->options.contains(u"directory"_s));
    const auto filters = portal->options.value(u"filters"_s).value<QDBusArgument>();
    EXPECT_EQ(filters.currentSignature(), u"a(sa(us))"_s);
    portal->answer(1, {});
    ASSERT_TRUE(isAnswered());
    EXPECT_EQ(answers, QStringList{u"nothing"_s});
}

TEST_F(PortalFileChooserTest, AsksForAFileToSave)
{
    ASSERT_TRUE(portal->appear());
    ask({.kind = Kind::saveFile, .title = u"Export"_s, .fileName = u"Backup.json"_s});
    ASSERT_TRUE(isUp());
    EXPECT_EQ(portal->method, u"SaveFile"_s);
    EXPECT_EQ(portal->options.value(u"current_name"_s), QVariant(u"Backup.json"_s));
    portal->answer(0, {});
    ASSERT_TRUE(isAnswered());
    EXPECT_EQ(answers, QStringList{u"nothing"_s}) << "a choice of nothing is none";
}

TEST_F(PortalFileChooserTest, SaysWhenThereIsNoPortal)
{
    ask({.kind = Kind::folder, .title = u"Choose Folder"_s});
    ASSERT_TRUE(isAnswered());
    EXPECT_EQ(answers, QStringList{u"unavailable"_s});
    EXPECT_EQ(log.lines.size(), 1);
}

TEST_F(PortalFileChooserTest, SaysWhenThePortalShowsNoDialogs)
{
    portal->isRefusing = true;
    ASSERT_TRUE(portal->appear());
    ask({.kind = Kind::folder, .title = u"Choose Folder"_s});
    ASSERT_TRUE(isAnswered());
    EXPECT_EQ(answers, QStringList{u"unavailable"_s});
}

TEST_F(PortalFileChooserTest, SaysWhenThereIsNoBus)
{
    isConnecting = false;
    ask({.kind = Kind::folder, .title = u"Choose Folder"_s});
    EXPECT_EQ(answers, QStringList{u"unavailable"_s});
}

TEST_F(PortalFileChooserTest, TheDialogGoesWithItsOwner)
{
    ASSERT_TRUE(portal->appear());
    ask({.kind = Kind::folder, .title = u"Choose Folder"_s});
    ASSERT_TRUE(isUp());
    EXPECT_FALSE(portal->request.isClosed);
    owner.reset();
    EXPECT_TRUE(eventually([this] { return portal->request.isClosed; }));
    portal->answer(0, {u"file:///late"_s});
    owner = std::make_unique<QObject>();
    portal->method.clear();
    ask({.kind = Kind::folder, .title = u"Choose Folder"_s});
    ASSERT_TRUE(isUp());
    portal->answer(1, {});
    ASSERT_TRUE(isAnswered());
    EXPECT_EQ(answers, QStringList{u"nothing"_s}) << "of the second one alone";
}

} // namespace
} // namespace vellumry::test
