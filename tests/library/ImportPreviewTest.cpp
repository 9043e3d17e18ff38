#include "library/ImportPreview.h"

#include <gtest/gtest.h>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Mode = ConflictResolutionMode;

ImportConflict conflictOf(std::chrono::seconds local, std::chrono::seconds imported)
{
    return {.id = u"1"_s,
            .type = ConflictType::snippet,
            .name = u"Name"_s,
            .localUpdatedAt = Date(local),
            .importedUpdatedAt = Date(imported)};
}

const SymbolText useImported{u"Use Imported"_s, u"arrow.down.circle.fill"_s};
const SymbolText keepLocal{u"Keep Local"_s, u"checkmark.circle.fill"_s};
const SymbolText keepBoth{u"Keep Both"_s, u"doc.on.doc.fill"_s};

TEST(ImportPreviewTest, theModesAreOfferedInTheirOrder)
{
    QStringList lines;
    for (const Mode mode : allConflictResolutionModes)
        lines.append(symbol(mode) + u" | "_s + title(mode) + u" | "_s + description(mode));
    EXPECT_EQ(
        lines,
        QStringList(
            {u"clock.arrow.circlepath | Smart Update | Keep the newer version based on update time"_s,
             u"arrow.down.doc.fill | Restore from Backup | Replace all conflicts with imported data"_s,
             u"arrow.uturn.right | Skip Conflicts | Keep existing data, only import non-conflicting items"_s,
             u"doc.on.doc.fill | Keep Both | Keep both versions, imported items will have \"(imported)\" suffix"_s}));
}

TEST(ImportPreviewTest, theTypeHasASymbol)
{
    ImportConflict conflict = conflictOf(1s, 2s);
    EXPECT_EQ(ImportPreview::type(conflict), (SymbolText{u"Snippet"_s, u"doc.text"_s}));
    conflict.type = ConflictType::collection;
    EXPECT_EQ(ImportPreview::type(conflict), (SymbolText{u"Collection"_s, u"folder.fill"_s}));
}

TEST(ImportPreviewTest, theStatusTellsTheNewerSide)
{
    EXPECT_EQ(ImportPreview::status(conflictOf(1s, 1s)), u"Same"_s);
    EXPECT_EQ(ImportPreview::status(conflictOf(1s, 2s)), u"Import newer"_s);
    EXPECT_EQ(ImportPreview::status(conflictOf(2s, 1s)), u"Local newer"_s);
}

TEST(ImportPreviewTest, theDecisionFollowsTheMode)
{
    const auto decisions = [](const ImportConflict& conflict) {
        QList<SymbolText> texts;
        for (const Mode mode : allConflictResolutionModes)
            texts.append(ImportPreview::decision(conflict, mode));
        return texts;
    };
    EXPECT_EQ(decisions(conflictOf(1s, 2s)),
              QList<SymbolText>({useImported, useImported, keepLocal, keepBoth}));
    EXPECT_EQ(decisions(conflictOf(2s, 1s)),
              QList<SymbolText>({keepLocal, useImported, keepLocal, keepBoth}));
}

TEST(ImportPreviewTest, equalDatesKeepTheLocalSide)
{
    EXPECT_EQ(ImportPreview::decision(conflictOf(1s, 1s), Mode::smartUpdate), keepLocal);
}

} // namespace
} // namespace vellumry::test
