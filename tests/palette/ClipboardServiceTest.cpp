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
    QStringList texts;
};

TEST(ClipboardService, WritesTheTextAsItIs)
{
    FakePasteboard pasteboard;
    ClipboardService service(pasteboard);
    service.copy(u" a\n漢 "_s);
    service.copy(u""_s);
    EXPECT_EQ(pasteboard.texts, (QStringList{u" a\n漢 "_s, u""_s}));
}

} // namespace
} // namespace vellumry
