// The list model's export.

#include "library/LibraryWorld.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

class Export : public testing::Test {
protected:
    void SetUp() override
    {
        world.load({makeCollection(u"W"_s, u"Work"_s), makeCollection(u"H"_s, u"Home"_s),
                    makeCollection(u"A"_s, u"Attic"_s)},
                   {orderedSnippet(u"a"_s, u"Work"_s, 2), orderedSnippet(u"b"_s, u"Attic"_s, 1),
                    orderedSnippet(u"c"_s, u"Home"_s, 0), orderedSnippet(u"d"_s, u"Work"_s, 1)});
    }

    [[nodiscard]] QStringList exportedNames() const
    {
        QStringList names;
        const ExportDocument document = model.exportDocument();
        for (const ExportCollection& each : document.exportData().collections)
            names.append(each.name);
        return names;
    }

    LibraryWorld world;
    SnippetListViewModel& model = world.model;
};

TEST_F(Export, ProposesEveryCollection)
{
    model.showExport();
    EXPECT_TRUE(model.showExportCollectionPicker());
    EXPECT_EQ(model.selectedCollectionsToExport(),
              (QSet<QString>{u"Work"_s, u"Home"_s, u"Attic"_s}));
    EXPECT_EQ(world.announced.take(), (QMap<QString, int>{{u"showExportCollectionPicker"_s, 1},
                                                          {u"selectedCollectionsToExport"_s, 1}}));
}

TEST_F(Export, ProposesOneCollectionAndAsksAllTheSame)
{
    model.showExportForCollection(u"Home"_s);
    EXPECT_TRUE(model.showExportCollectionPicker());
    EXPECT_FALSE(model.showExportPicker());
    EXPECT_EQ(model.selectedCollectionsToExport(), QSet<QString>{u"Home"_s});
}

TEST_F(Export, GoesOnFromThePickerToTheFile)
{
    model.showExport();
    model.confirmCollectionsToExport();
    EXPECT_FALSE(model.showExportCollectionPicker());
    EXPECT_TRUE(model.showExportPicker());
    EXPECT_EQ(model.selectedCollectionsToExport().size(), 3);
    model.setShowExportPicker(false);
    EXPECT_FALSE(model.showExportPicker());
}

TEST_F(Export, IsCancelledInThePicker)
{
    model.showExport();
    model.cancelCollectionsToExport();
    EXPECT_FALSE(model.showExportCollectionPicker());
    EXPECT_FALSE(model.showExportPicker());
    EXPECT_THAT(model.selectedCollectionsToExport(), IsEmpty());
}

TEST_F(Export, HasTheChosenCollectionsInTheOrderOfTheSidebar)
{
    world.colors.saveColors({{u"Work"_s, u"blue"_s}, {u"Attic"_s, u"none such"_s}});
    model.moveCollections({2}, 0);
    model.setSelectedCollectionsToExport({u"Work"_s, u"Attic"_s, u"Unknown"_s});
    const ExportData data = model.exportDocument().exportData();
    EXPECT_EQ(data.version, u"2.0"_s);
    EXPECT_EQ(data.exportedAt, world.clock.now());
    ASSERT_EQ(data.collections.size(), 2);
    EXPECT_EQ(data.collections[0].name, u"Attic"_s);
    EXPECT_EQ(data.collections[0].id, u"A"_s);
    EXPECT_EQ(data.collections[0].displayOrder, 0);
    EXPECT_EQ(data.collections[0].color, std::nullopt);
    EXPECT_EQ(data.collections[1].name, u"Work"_s);
    EXPECT_EQ(data.collections[1].displayOrder, 1);
    EXPECT_EQ(data.collections[1].color, u"#2F7BE0"_s) << "a preset in hexadecimal form";
    EXPECT_THAT(idsOf(data.collections[1].snippets), ElementsAre(u"a"_s, u"d"_s));
}

TEST_F(Export, GivesACollectionWithoutColourTheGreyOne)
{
    model.showExportForCollection(u"Home"_s);
    EXPECT_EQ(model.exportDocument().exportData().collections.first().color, u"#868C89"_s);
}

TEST_F(Export, TakesNoDrafts)
{
    model.setUnsavedEdit(titled(inCollection(world.snippet(u"a"_s), u"Home"_s), u"draft"_s));
    model.showExport();
    EXPECT_EQ(model.exportDocument().exportData().collections.first().snippets.first().title(),
              u"Title of a"_s);
}

TEST_F(Export, OfNothingHasNoCollections)
{
    EXPECT_THAT(exportedNames(), IsEmpty());
}

TEST_F(Export, WritesBothCollectionsOfOneNameWithTheSnippetsOfTheName)
{
    model.renameCollection(u"Attic"_s, u"Home"_s);
    model.showExportForCollection(u"Home"_s);
    const ExportData data = model.exportDocument().exportData();
    ASSERT_EQ(data.collections.size(), 2);
    EXPECT_THAT(idsOf(data.collections[0].snippets), ElementsAre(u"b"_s, u"c"_s));
    EXPECT_EQ(data.collections[0].snippets, data.collections[1].snippets);
}

TEST_F(Export, WritesTheFileAndALine)
{
    model.showExportForCollection(u"Home"_s);
    world.log.lines.clear();
    (void)world.announced.take();
    model.exportTo(u"/backup.json"_s);
    EXPECT_EQ(world.files.bytes(u"/backup.json"_s), model.exportDocument().fileWrapper());
    EXPECT_THAT(world.log.lines, ElementsAre(u"SnippetListViewModel: 导出成功: /backup.json"_s));
    EXPECT_THAT(world.announced.take(), IsEmpty());
    EXPECT_EQ(model.importResult(), std::nullopt);
    EXPECT_THAT(world.storage.calls, IsEmpty());
}

TEST_F(Export, TellsOfAFailureInALineAlone)
{
    world.files.onOperation = [](const QString& operation, const QString& path) {
        throw MemoryFileSystem::error(operation, path, ENOSPC);
    };
    world.log.lines.clear();
    model.exportTo(u"/backup.json"_s);
    EXPECT_THAT(world.log.lines,
                ElementsAre(u"SnippetListViewModel: 导出失败: cannot write \"/backup.json\": "
                            "No space left on device"_s));
    SnippetListViewModel::handleExport({.path = {}, .error = u"no reason"_s});
    EXPECT_EQ(world.log.lines.last(), u"SnippetListViewModel: 导出失败: no reason"_s);
    EXPECT_THAT(world.announced.take(), IsEmpty());
}

} // namespace
} // namespace vellumry::test
