#include "palette/ClipboardService.h"

#include "platform/Pasteboard.h"

#include <QStringList>
#include <gtest/gtest.h>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;

class FakePasteboard final : public Pasteboard {
public:
    void setString(const QString& text) override { texts.append(text); }
    void setSecretString(const QString& text) override { secrets.append(text); }
    QStringList texts;
    QStringList secrets;
};

TEST(ClipboardService, WritesTheTextAsItIs)
{
    FakePasteboard pasteboard;
    ClipboardService service(pasteboard);
    service.copy(u" a\n漢 "_s);
    service.copy(u""_s);
    EXPECT_EQ(pasteboard.texts, (QStringList{u" a\n漢 "_s, u""_s}));
    EXPECT_TRUE(pasteboard.secrets.isEmpty());
}

TEST(ClipboardService, WritesASecretAsOne)
{
    FakePasteboard pasteboard;
    ClipboardService service(pasteboard);
    service.copySecret(u"k3v9qa7m"_s);
    EXPECT_EQ(pasteboard.secrets, QStringList{u"k3v9qa7m"_s});
    EXPECT_TRUE(pasteboard.texts.isEmpty());
}

} // namespace
} // namespace vellumry
