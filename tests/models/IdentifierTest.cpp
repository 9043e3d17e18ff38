#include "models/Identifier.h"

#include <QRegularExpression>
#include <QSet>
#include <gtest/gtest.h>

namespace vellumry {
namespace {

TEST(Identifier, IsUpperCaseTextOfARandomUuid)
{
    static const QRegularExpression form(QStringLiteral(
        "\\A[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}\\z"));
    QSet<QString> seen;
    for (int i = 0; i < 1000; ++i) {
        const QString id = makeIdentifier();
        EXPECT_TRUE(form.match(id).hasMatch()) << qPrintable(id);
        seen.insert(id);
    }
    EXPECT_EQ(seen.size(), 1000);
}

} // namespace
} // namespace vellumry
