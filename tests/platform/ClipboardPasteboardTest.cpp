#include "platform/linux/ClipboardPasteboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <gtest/gtest.h>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;

TEST(ClipboardPasteboard, ReplacesTheContentsByPlainText)
{
    auto* old = new QMimeData;
    old->setHtml(u"<b>old</b>"_s);
    old->setText(u"old"_s);
    QGuiApplication::clipboard()->setMimeData(old);

    ClipboardPasteboard().setString(u"new\n漢😀"_s);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"new\n漢😀"_s);
    EXPECT_FALSE(QGuiApplication::clipboard()->mimeData()->hasHtml());

    ClipboardPasteboard().setString(u""_s);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u""_s);
}

TEST(ClipboardPasteboard, OffersASecretAsPlainTextWithAHint)
{
    ClipboardPasteboard().setSecretString(u"k3v9qa7m"_s);
    const QMimeData* contents = QGuiApplication::clipboard()->mimeData();
    EXPECT_EQ(contents->text(), u"k3v9qa7m"_s);
    EXPECT_EQ(contents->data(u"x-kde-passwordManagerHint"_s), "secret");

    ClipboardPasteboard().setString(u"plain"_s);
    EXPECT_FALSE(
        QGuiApplication::clipboard()->mimeData()->hasFormat(u"x-kde-passwordManagerHint"_s));
}

} // namespace
} // namespace vellumry
