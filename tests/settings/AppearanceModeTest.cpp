#include "settings/AppearanceMode.h"

#include <QStringList>
#include <gtest/gtest.h>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;

TEST(AppearanceModeTest, AreThreeInTheirOrder)
{
    QStringList texts;
    for (const AppearanceMode mode : allAppearanceModes) {
        texts.append(rawValue(mode));
        EXPECT_EQ(appearanceModeFromRawValue(texts.last()), mode);
    }
    EXPECT_EQ(texts, (QStringList{u"light"_s, u"dark"_s, u"system"_s}));
}

TEST(AppearanceModeTest, OtherTextsAreNoMode)
{
    for (const QString& text : {u""_s, u"Dark"_s, u"dark "_s, u"auto"_s, u"0"_s})
        EXPECT_EQ(appearanceModeFromRawValue(text), std::nullopt) << qPrintable(text);
}

} // namespace
} // namespace vellumry
