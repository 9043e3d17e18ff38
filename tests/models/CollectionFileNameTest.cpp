#include "models/CollectionFileName.h"

#include <gtest/gtest.h>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;

TEST(CollectionFileName, IsDerivedFromTheName)
{
    EXPECT_EQ(collectionFileBaseName(u"My Notes"_s), u"my-notes"_s);
    EXPECT_EQ(collectionFileBaseName(u"a / b"_s), u"a-b"_s);
    EXPECT_EQ(collectionFileBaseName(u"---"_s), u"collection"_s);
    EXPECT_EQ(collectionFileBaseName(u"///"_s), u"collection"_s);
    EXPECT_EQ(collectionFileBaseName(u"Résumé: 2026?"_s), u"résumé-2026"_s);
    EXPECT_EQ(collectionFileBaseName(u""_s), u"collection"_s);
    EXPECT_EQ(collectionFileBaseName(u"   "_s), u"collection"_s);
}

TEST(CollectionFileName, ADeletedCharacterLetsDashesMeet)
{
    EXPECT_EQ(collectionFileBaseName(u"a-/-b"_s), u"a-b"_s);
    EXPECT_EQ(collectionFileBaseName(u"a -?- b"_s), u"a-b"_s);
    EXPECT_EQ(collectionFileBaseName(u"/-/"_s), u"collection"_s);
}

TEST(CollectionFileName, DashesCollapseUntilNoneIsDouble)
{
    for (int count = 1; count <= 20; ++count)
        EXPECT_EQ(collectionFileBaseName(u"a"_s + QString(count, u'-') + u"b"_s), u"a-b"_s)
            << count;
}

TEST(CollectionFileName, DeletesExactlyNineCharacters)
{
    EXPECT_EQ(collectionFileBaseName(u"a/b\\c:d*e?f\"g<h>i|j"_s), u"abcdefghij"_s);
    EXPECT_EQ(collectionFileBaseName(u"a.b,c;d'e!f#g%h&i~j"_s), u"a.b,c;d'e!f#g%h&i~j"_s);
}

TEST(CollectionFileName, OnlyTheBlankBecomesADash)
{
    EXPECT_EQ(collectionFileBaseName(u"a\tb\u00A0c\u3000d"_s), u"a\tb\u00A0c\u3000d"_s);
}

TEST(CollectionFileName, OnlyDashesAreTrimmed)
{
    EXPECT_EQ(collectionFileBaseName(u" -a- "_s), u"a"_s);
    EXPECT_EQ(collectionFileBaseName(u"..hidden.."_s), u"..hidden.."_s);
    EXPECT_EQ(collectionFileBaseName(u"_metadata"_s), u"_metadata"_s);
    EXPECT_EQ(collectionFileBaseName(u"\ta\t"_s), u"\ta\t"_s);
}

TEST(CollectionFileName, KeepsLettersOfAnyScript)
{
    EXPECT_EQ(collectionFileBaseName(u"工作 Notes"_s), u"工作-notes"_s);
    EXPECT_EQ(collectionFileBaseName(u"STRASSE Ärger"_s), u"strasse-ärger"_s);
    // Letter by letter: no final sigma.
    EXPECT_EQ(collectionFileBaseName(u"ΣΑΣ İ"_s), u"σασ-i\u0307"_s);
    EXPECT_EQ(collectionFileBaseName(u"😀 Fun"_s), u"😀-fun"_s);
}

TEST(CollectionFileName, IsMadeUnique)
{
    EXPECT_EQ(generateUniqueFileName(u"work"_s, {}), u"work"_s);
    EXPECT_EQ(generateUniqueFileName(u"work"_s, {u"play"_s}), u"work"_s);
    EXPECT_EQ(generateUniqueFileName(u"work"_s, {u"work"_s}), u"work-1"_s);
    EXPECT_EQ(generateUniqueFileName(collectionFileBaseName(u"Work"_s), {u"work"_s, u"work-1"_s}),
              u"work-2"_s);
    EXPECT_EQ(generateUniqueFileName(u"work"_s, {u"work"_s, u"work-2"_s}), u"work-1"_s);
    EXPECT_EQ(generateUniqueFileName(u"work-1"_s, {u"work"_s, u"work-1"_s}), u"work-1-1"_s);
    EXPECT_EQ(generateUniqueFileName(u"work"_s, {u"Work"_s}), u"work"_s);
}

TEST(CollectionFileName, FindsTheFirstFreeNumberAmongMany)
{
    QSet<QString> taken{u"work"_s};
    for (int i = 1; i < 1000; ++i)
        taken.insert(u"work-%1"_s.arg(i));
    EXPECT_EQ(generateUniqueFileName(u"work"_s, taken), u"work-1000"_s);
}

TEST(CollectionFileName, FindsTheBaseNameOfFilesWithTheExactExtension)
{
    EXPECT_EQ(jsonFileBaseName(u"work.json"_s), u"work"_s);
    EXPECT_EQ(jsonFileBaseName(u".hidden.json"_s), u".hidden"_s);
    EXPECT_EQ(jsonFileBaseName(u"a.json.json"_s), u"a.json"_s);
    EXPECT_EQ(jsonFileBaseName(u"_metadata.json"_s), u"_metadata"_s);
    for (const QString& name : {u"work.JSON"_s, u"work.json~"_s, u"work.json.backup"_s, u"json"_s,
                                u".json"_s, u"work."_s, u""_s})
        EXPECT_EQ(jsonFileBaseName(name), std::nullopt) << name.toStdString();
}

} // namespace
} // namespace vellumry
