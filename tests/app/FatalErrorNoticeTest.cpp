#include "app/FatalErrorNotice.h"

#include "FolderOpener.h"

#include <QAbstractButton>
#include <QMessageBox>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vellumry::test {

namespace {

using testing::ElementsAre;

const FatalErrorReport duplicate{.text = QStringLiteral("Duplicate values for key: 'A-1'"),
                                 .key = QStringLiteral("A-1"),
                                 .file = QStringLiteral("/library/Mail.json")};

TEST(FatalErrorNoticeTest, theReportTravelsByTheArguments)
{
    const auto read = FatalErrorNotice::reportIn(FatalErrorNotice::argumentsFor(duplicate));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->text, duplicate.text);
    EXPECT_EQ(read->key, duplicate.key);
    EXPECT_EQ(read->file, duplicate.file);
    EXPECT_FALSE(FatalErrorNotice::reportIn({}));
    EXPECT_FALSE(FatalErrorNotice::reportIn({QStringLiteral("--hidden"), {}, {}, {}}));
}

TEST(FatalErrorNoticeTest, saysWhichFileHoldsWhichIdTwiceAndHowToMendIt)
{
    const QString text = FatalErrorNotice::explanation(duplicate);
    EXPECT_TRUE(text.contains(QStringLiteral("\"/library/Mail.json\" holds the id \"A-1\" twice")));
    EXPECT_TRUE(text.contains(QStringLiteral("To mend it:")));
    EXPECT_TRUE(text.contains(QStringLiteral("Nothing in your library was changed")));
}

TEST(FatalErrorNoticeTest, hasAButtonThatOpensTheFolder)
{
    FolderOpener opener;
    QMessageBox window;
    FatalErrorNotice::prepare(window, duplicate);
    QStringList labels;
    for (QAbstractButton* button : window.buttons()) {
        labels.append(button->text().remove(u'&'));
        if (button->text() == QStringLiteral("Open Folder"))
            button->click();
    }
    EXPECT_THAT(labels, testing::UnorderedElementsAre(QStringLiteral("Open Folder"),
                                                      QStringLiteral("Close")));
    EXPECT_THAT(opener.opened, ElementsAre(QUrl(QStringLiteral("file:///library"))));
    EXPECT_TRUE(window.informativeText().contains(QStringLiteral("/library/Mail.json")));
}

TEST(FatalErrorNoticeTest, anErrorWithoutAFileIsTold)
{
    const FatalErrorReport report{
        .text = QStringLiteral("无法获取 Documents 目录"), .key = {}, .file = {}};
    EXPECT_TRUE(FatalErrorNotice::explanation(report).contains(report.text));
    QMessageBox window;
    FatalErrorNotice::prepare(window, report);
    EXPECT_EQ(window.buttons().size(), 1);
}

} // namespace

} // namespace vellumry::test
