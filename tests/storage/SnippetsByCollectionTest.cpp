#include "storage/SnippetsByCollection.h"

#include "storage/StorageWorld.h"

#include <gtest/gtest.h>

#include <random>

using namespace vellumry;
using namespace vellumry::test;

namespace {

TEST(SnippetsByCollectionTest, keepsTheOrderWithinEachGroup)
{
    const QList<Snippet> snippets{makeSnippet(QStringLiteral("1"), QStringLiteral("A")),
                                  makeSnippet(QStringLiteral("2"), QStringLiteral("B")),
                                  makeSnippet(QStringLiteral("3"), QStringLiteral("A"))};
    const SnippetsByCollection groups(snippets);
    EXPECT_EQ(idsOf(groups.of(QStringLiteral("A")).toList()),
              (QStringList{QStringLiteral("1"), QStringLiteral("3")}));
    EXPECT_EQ(idsOf(groups.of(QStringLiteral("B")).toList()), QStringList{QStringLiteral("2")});
    EXPECT_EQ(groups.of(QStringLiteral("C")).size(), 0);
    EXPECT_TRUE(groups.of(QStringLiteral("A"))[1].sharesDataWith(snippets[2]));
}

TEST(SnippetsByCollectionTest, anEmptyListHasNoGroups)
{
    EXPECT_EQ(SnippetsByCollection({}).of(QString()).size(), 0);
}

TEST(SnippetsByCollectionTest, groupsByTextWhereverItIsKept)
{
    // Names that share memory, that are equal in different memory, empty and absent ones, and two
    // that begin at the same address.
    static const char16_t text[] = u"WorkWork";
    const QString shared = QStringLiteral("Work");
    const QStringList names{shared,
                            shared,
                            QString(shared.constData(), shared.size()),
                            QString::fromRawData(reinterpret_cast<const QChar*>(text), 4),
                            QString::fromRawData(reinterpret_cast<const QChar*>(text), 8),
                            QString(),
                            QStringLiteral(""),
                            QStringLiteral("work")};
    std::mt19937 random(7);
    QList<Snippet> snippets;
    QMap<QString, QStringList> expected;
    for (int i = 0; i < 1000; ++i) {
        const QString id = QString::number(i);
        const QString& name = names[static_cast<qsizetype>(random() % names.size())];
        snippets.append(makeSnippet(id, name));
        expected[name].append(id);
    }
    const SnippetsByCollection groups(snippets);
    ASSERT_EQ(expected.size(), 4);
    for (auto it = expected.cbegin(); it != expected.cend(); ++it)
        EXPECT_EQ(idsOf(groups.of(it.key()).toList()), it.value());
}

} // namespace
