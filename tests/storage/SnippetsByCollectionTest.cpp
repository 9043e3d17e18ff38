#include "storage/SnippetsByCollection.h"

#include "storage/StorageWorld.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using namespace vellumry;
using namespace vellumry::test;

namespace {

SnippetsByCollection grouped(const QList<Snippet>& snippets)
{
    SnippetsByCollection groups;
    groups.regroup(snippets);
    return groups;
}

TEST(SnippetsByCollectionTest, keepsTheOrderWithinEachGroup)
{
    const QList<Snippet> snippets{makeSnippet(QStringLiteral("1"), QStringLiteral("A")),
                                  makeSnippet(QStringLiteral("2"), QStringLiteral("B")),
                                  makeSnippet(QStringLiteral("3"), QStringLiteral("A"))};
    const SnippetsByCollection groups = grouped(snippets);
    EXPECT_EQ(idsOf(groups.of(QStringLiteral("A")).toList()),
              (QStringList{QStringLiteral("1"), QStringLiteral("3")}));
    EXPECT_EQ(idsOf(groups.of(QStringLiteral("B")).toList()), QStringList{QStringLiteral("2")});
    EXPECT_EQ(groups.of(QStringLiteral("C")).size(), 0);
    EXPECT_TRUE(groups.of(QStringLiteral("A"))[1].sharesDataWith(snippets[2]));
}

TEST(SnippetsByCollectionTest, anEmptyListHasNoGroups)
{
    EXPECT_EQ(grouped({}).of(QString()).size(), 0);
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
    const SnippetsByCollection groups = grouped(snippets);
    ASSERT_EQ(expected.size(), 4);
    for (auto it = expected.cbegin(); it != expected.cend(); ++it)
        EXPECT_EQ(idsOf(groups.of(it.key()).toList()), it.value());
}

TEST(SnippetsByCollectionTest, regroupsAfterEveryKindOfChange)
{
    std::mt19937 random(11);
    const auto pick = [&](qsizetype count) {
        return static_cast<qsizetype>(random() % static_cast<unsigned>(count));
    };
    const auto name = [&] { return QString::number(pick(5)); };
    int made = 0;
    const auto make = [&] { return makeSnippet(QString::number(made++), name()); };
    SnippetsByCollection groups;
    QList<Snippet> snippets;
    for (int step = 0; step < 2000; ++step) {
        const qsizetype changes = 1 + pick(3);
        for (qsizetype change = 0; change < changes; ++change) {
            const qsizetype at = snippets.isEmpty() ? 0 : pick(snippets.size());
            switch (pick(7)) {
            case 0:
            case 1:
                snippets.insert(at, make());
                break;
            case 2:
                if (!snippets.isEmpty())
                    snippets.removeAt(at);
                break;
            case 3:
            case 4:
                if (!snippets.isEmpty())
                    snippets[at].setCollection(name());
                break;
            case 5:
                if (!snippets.isEmpty())
                    snippets.swapItemsAt(at, pick(snippets.size()));
                break;
            default:
                if (pick(20) == 0)
                    std::shuffle(snippets.begin(), snippets.end(), random);
                break;
            }
        }
        groups.regroup(snippets);
        for (int i = 0; i < 6; ++i) {
            const QString wanted = QString::number(i);
            QStringList expected;
            for (const Snippet& snippet : std::as_const(snippets)) {
                if (snippet.collection() == wanted)
                    expected.append(snippet.id());
            }
            ASSERT_EQ(idsOf(groups.of(wanted).toList()), expected) << "step " << step;
        }
    }
}

} // namespace
