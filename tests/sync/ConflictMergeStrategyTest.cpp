#include "sync/ConflictMergeStrategy.h"

#include <QStringList>
#include <gtest/gtest.h>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;

TEST(ConflictMergeStrategy, HasItsTextsInTheOrderOfTheCases)
{
    QList<QStringList> table;
    for (const ConflictMergeStrategy strategy : allConflictMergeStrategies)
        table.append({rawValue(strategy), titleOf(strategy), description(strategy),
                      symbol(strategy), badge(strategy)});
    EXPECT_EQ(
        table,
        (QList<QStringList>{
            {u"useLocal"_s, u"Keep Local"_s,
             u"Discard the conflict file and keep your current data"_s, u"internaldrive"_s, u""_s},
            {u"useRemote"_s, u"Use Conflict Version"_s,
             u"Replace your data with the conflict file's data"_s, u"cloud"_s, u""_s},
            {u"smartMerge"_s, u"Smart Merge"_s,
             u"Merge both versions, keeping the newest changes"_s, u"sparkles"_s, u"Recommended"_s},
            {u"keepBoth"_s, u"Keep Both"_s,
             u"Keep all snippets from both versions (may create duplicates)"_s, u"doc.on.doc"_s,
             u""_s}}));
    EXPECT_EQ(defaultConflictMergeStrategy, ConflictMergeStrategy::smartMerge);
}

} // namespace
} // namespace vellumry
