#include "views/palette/PaletteRows.h"

#include <QDateTime>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vellumry {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

Date localTime(int year, int month, int day, int hour, int minute)
{
    const QDateTime time(QDate(year, month, day), QTime(hour, minute));
    return Date(std::chrono::milliseconds(time.toMSecsSinceEpoch()));
}

const Date now = localTime(2026, 11, 21, 12, 0);

Snippet snippet(const QString& id, std::optional<Date> lastUsedAt = {}, qint64 usageCount = 0)
{
    SnippetFields fields;
    fields.id = id;
    fields.title = u"Title "_s + id;
    fields.collection = u"Shell"_s;
    fields.lastUsedAt = lastUsedAt;
    fields.usageCount = usageCount;
    return Snippet(fields);
}

QList<Snippet> snippets(int count)
{
    QList<Snippet> result;
    for (int i = 0; i < count; ++i)
        result.append(snippet(QString::number(i)));
    return result;
}

QStringList ids(const PaletteRows& rows)
{
    QStringList result;
    for (const PaletteRow& row : rows.lines())
        result.append(row.isHeader() ? u"["_s + row.title + u"]"_s : row.id);
    return result;
}

const PaletteRow& row(const PaletteRows& rows, int index)
{
    return rows.lines()[rows.lineOfIndex(index)];
}

TEST(PaletteRowsTest, emptyQueryShowsActionsTodayAndMostUsed)
{
    const PaletteRows rows({.query = {},
                            .filteredSnippets = {snippet(u"a"_s), snippet(u"b"_s)},
                            .todaySnippets = {snippet(u"b"_s)},
                            .justCopiedID = {}},
                           now);
    EXPECT_THAT(ids(rows), ElementsAre(u"[Actions]"_s, u"open-app-item"_s, u"[Today]"_s,
                                       u"today-b"_s, u"[Most Used]"_s, u"a"_s, u"b"_s));
    EXPECT_EQ(rows.totalItemCount(), 4);
}

TEST(PaletteRowsTest, indicesCountThroughAllSections)
{
    const PaletteRows rows({.query = {},
                            .filteredSnippets = snippets(12),
                            .todaySnippets = snippets(7),
                            .justCopiedID = {}},
                           now);
    EXPECT_EQ(rows.totalItemCount(), 1 + 5 + 10);
    EXPECT_EQ(row(rows, 0).kind, PaletteRowKind::openApp);
    EXPECT_EQ(row(rows, 1).id, u"today-0"_s);
    EXPECT_EQ(row(rows, 5).id, u"today-4"_s);
    EXPECT_EQ(row(rows, 6).id, u"0"_s);
    EXPECT_EQ(row(rows, 15).id, u"9"_s);
    EXPECT_EQ(rows.lineOfIndex(16), -1);
    EXPECT_EQ(rows.lineOfIndex(-1), -1);
}

TEST(PaletteRowsTest, theOpenRowHasItsOwnHoverValue)
{
    const PaletteRows rows(
        {.query = {}, .filteredSnippets = snippets(2), .todaySnippets = {}, .justCopiedID = {}},
        now);
    EXPECT_EQ(row(rows, 0).hoverIndex, -1);
    EXPECT_EQ(row(rows, 1).hoverIndex, 1);
    EXPECT_EQ(row(rows, 2).hoverIndex, 2);
}

TEST(PaletteRowsTest, emptyLibraryAndQueryShowActionsAlone)
{
    const PaletteRows rows(PaletteRows::State{}, now);
    EXPECT_THAT(ids(rows), ElementsAre(u"[Actions]"_s, u"open-app-item"_s));
    EXPECT_EQ(rows.totalItemCount(), 1);
    EXPECT_FALSE(rows.showsEmptyState());
}

TEST(PaletteRowsTest, theOpenRowHasItsTexts)
{
    const PaletteRows rows(PaletteRows::State{}, now);
    EXPECT_EQ(row(rows, 0).symbol, u"macwindow"_s);
    EXPECT_EQ(row(rows, 0).title, u"Open Vellumry"_s);
    EXPECT_EQ(row(rows, 0).detail, u"View all snippets"_s);
    EXPECT_EQ(row(rows, 0).badge, u"App"_s);
}

TEST(PaletteRowsTest, aQueryShowsTenResultsFromIndexZero)
{
    const PaletteRows rows({.query = u"x"_s,
                            .filteredSnippets = snippets(12),
                            .todaySnippets = snippets(3),
                            .justCopiedID = {}},
                           now);
    EXPECT_EQ(rows.totalItemCount(), 10);
    EXPECT_EQ(rows.lines().first().title, u"Results"_s);
    EXPECT_EQ(row(rows, 0).id, u"0"_s);
    EXPECT_EQ(row(rows, 0).hoverIndex, 0);
    EXPECT_FALSE(rows.showsEmptyState());
}

TEST(PaletteRowsTest, aQueryWithoutHitsShowsTheEmptyState)
{
    const PaletteRows rows(
        {.query = u"x"_s, .filteredSnippets = {}, .todaySnippets = {}, .justCopiedID = {}}, now);
    EXPECT_TRUE(rows.showsEmptyState());
    EXPECT_TRUE(rows.lines().isEmpty());
    EXPECT_EQ(rows.totalItemCount(), 0);
}

TEST(PaletteRowsTest, theSelectionIsClampedAtTheEndAndZeroWithoutRows)
{
    const PaletteRows rows(
        {.query = u"x"_s, .filteredSnippets = snippets(3), .todaySnippets = {}, .justCopiedID = {}},
        now);
    EXPECT_EQ(rows.clampedSelection(0), 0);
    EXPECT_EQ(rows.clampedSelection(2), 2);
    EXPECT_EQ(rows.clampedSelection(3), 2);
    EXPECT_EQ(rows.clampedSelection(99), 2);
    EXPECT_EQ(PaletteRows().clampedSelection(4), 0);
}

TEST(PaletteRowsTest, trailingTextsDependOnTheSection)
{
    const Snippet used = snippet(u"u"_s, now - 5min, 12);
    const Snippet unused = snippet(u"n"_s);
    const PaletteRows empty({.query = {},
                             .filteredSnippets = {used, unused},
                             .todaySnippets = {used, unused},
                             .justCopiedID = {}},
                            now);
    EXPECT_EQ(row(empty, 1).trailing, u"11:55 AM"_s);
    EXPECT_EQ(row(empty, 2).trailing, QString());
    EXPECT_EQ(row(empty, 3).trailing, u"12×"_s);
    EXPECT_EQ(row(empty, 4).trailing, QString());

    const PaletteRows results({.query = u"x"_s,
                               .filteredSnippets = {used, unused},
                               .todaySnippets = {},
                               .justCopiedID = {}},
                              now);
    EXPECT_EQ(row(results, 0).trailing, u"5m ago"_s);
    EXPECT_EQ(row(results, 1).trailing, QString());
}

TEST(PaletteRowsTest, onlyTheJustCopiedSnippetIsMarked)
{
    const PaletteRows rows({.query = u"x"_s,
                            .filteredSnippets = snippets(2),
                            .todaySnippets = {},
                            .justCopiedID = u"1"_s},
                           now);
    EXPECT_FALSE(row(rows, 0).isCopied);
    EXPECT_TRUE(row(rows, 1).isCopied);
}

QList<PasswordResult> passwords()
{
    return {{u"1"_s, u"k3v9"_s, PasswordComplexity::simple, 4},
            {u"2"_s, u"Wm7_"_s, PasswordComplexity::medium, 4},
            {u"3"_s, u"u$8K"_s, PasswordComplexity::strong, 4}};
}

const CalculationResult sum{u"2+3"_s, 5, u"5"_s};

TEST(PaletteRowsTest, passwordsStandAlone)
{
    const PaletteRows rows({.query = u"/rand:4"_s, .passwordResults = passwords()}, now);
    EXPECT_THAT(ids(rows), ElementsAre(u"[Random Password]"_s, u"password-1"_s, u"password-2"_s,
                                       u"password-3"_s));
    EXPECT_EQ(rows.totalItemCount(), 3);
    EXPECT_FALSE(rows.showsEmptyState());
    for (int index = 0; index < 3; ++index) {
        EXPECT_EQ(row(rows, index).kind, PaletteRowKind::password);
        EXPECT_EQ(row(rows, index).hoverIndex, index);
    }
}

TEST(PaletteRowsTest, passwordsHaveTheTextsAndSymbolOfTheirComplexity)
{
    const PaletteRows rows({.query = u"/rand:4"_s, .passwordResults = passwords()}, now);
    const auto look = [&](int index) {
        const PaletteRow& one = row(rows, index);
        return QStringList{one.symbol, one.title, one.detail, one.badge, one.trailing};
    };
    EXPECT_THAT(look(0), ElementsAre(u"lock.open"_s, u"k3v9"_s, u"a-z, 0-9"_s, u"Simple"_s, u""_s));
    EXPECT_THAT(look(1),
                ElementsAre(u"lock"_s, u"Wm7_"_s, u"A-z, 0-9, -_@#"_s, u"Medium"_s, u""_s));
    EXPECT_THAT(look(2), ElementsAre(u"lock.shield"_s, u"u$8K"_s, u"A-z, 0-9, !@#$%..."_s,
                                     u"Strong"_s, u""_s));
}

TEST(PaletteRowsTest, aCalculationStandsAboveTheResults)
{
    const PaletteRows rows(
        {.query = u"2+3="_s, .filteredSnippets = snippets(12), .calculationResult = sum}, now);
    EXPECT_EQ(rows.totalItemCount(), 11);
    EXPECT_THAT(ids(rows).first(4),
                ElementsAre(u"[Calculator]"_s, u"calculator-result"_s, u"[Results]"_s, u"0"_s));
    EXPECT_EQ(row(rows, 0).kind, PaletteRowKind::calculator);
    EXPECT_EQ(row(rows, 0).hoverIndex, -100);
    EXPECT_EQ(row(rows, 1).id, u"0"_s);
    EXPECT_EQ(row(rows, 1).hoverIndex, 1);
    EXPECT_EQ(row(rows, 10).id, u"9"_s);
    EXPECT_EQ(rows.lineOfIndex(11), -1);
}

TEST(PaletteRowsTest, aCalculationHasItsTexts)
{
    const PaletteRows rows({.query = u"2+3="_s, .calculationResult = sum}, now);
    EXPECT_EQ(rows.totalItemCount(), 1);
    EXPECT_FALSE(rows.showsEmptyState());
    const PaletteRow& one = row(rows, 0);
    EXPECT_EQ(one.symbol, u"equal"_s);
    EXPECT_EQ(one.detail, u"2+3 ="_s);
    EXPECT_EQ(one.title, u"5"_s);
    EXPECT_EQ(one.trailing, u"Copy result"_s);
    EXPECT_EQ(one.badge, u"Calc"_s);
}

TEST(PaletteRowsTest, answersOfTheLastQueryDoNotCountInAnEmptyField)
{
    // For 50 ms after the palette appears they still stand below the opening row.
    const PaletteRows withPasswords({.query = {}, .passwordResults = passwords()}, now);
    EXPECT_EQ(withPasswords.totalItemCount(), 1);
    EXPECT_EQ(row(withPasswords, 0).kind, PaletteRowKind::openApp);

    const PaletteRows withCalculation(
        {.query = {}, .filteredSnippets = snippets(2), .calculationResult = sum}, now);
    EXPECT_EQ(withCalculation.totalItemCount(), 3);
    EXPECT_EQ(row(withCalculation, 0).kind, PaletteRowKind::openApp);
    EXPECT_EQ(row(withCalculation, 1).id, u"0"_s);
}

TEST(PaletteRowsTest, timeOfDayIsInTwelveHours)
{
    EXPECT_EQ(timeString(localTime(2026, 3, 9, 0, 5)), u"12:05 AM"_s);
    EXPECT_EQ(timeString(localTime(2026, 3, 9, 9, 30)), u"9:30 AM"_s);
    EXPECT_EQ(timeString(localTime(2026, 3, 9, 12, 0)), u"12:00 PM"_s);
    EXPECT_EQ(timeString(localTime(2026, 3, 9, 14, 41)), u"2:41 PM"_s);
}

TEST(PaletteRowsTest, ageGoesByElapsedTimeAndIsTruncated)
{
    const auto text = [](std::chrono::nanoseconds elapsed) {
        return lastUsedString(now - elapsed, now);
    };
    EXPECT_EQ(text(-10min), u"Just now"_s);
    EXPECT_EQ(text(0s), u"Just now"_s);
    EXPECT_EQ(text(60s - 1ns), u"Just now"_s);
    EXPECT_EQ(text(60s), u"1m ago"_s);
    EXPECT_EQ(text(119s), u"1m ago"_s);
    EXPECT_EQ(text(5min), u"5m ago"_s);
    EXPECT_EQ(text(3600s - 1ns), u"59m ago"_s);
    EXPECT_EQ(text(3600s), u"1h ago"_s);
    EXPECT_EQ(text(86400s - 1ns), u"23h ago"_s);
    EXPECT_EQ(text(86400s), u"Yesterday"_s);
    EXPECT_EQ(text(172800s - 1ns), u"Yesterday"_s);
    EXPECT_EQ(text(172800s), u"2d ago"_s);
    EXPECT_EQ(text(604800s - 1ns), u"6d ago"_s);
    EXPECT_EQ(text(604800s), u"Nov 14"_s);
}

TEST(PaletteRowsTest, oldDatesAreEnglishInEveryLocale)
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German));
    EXPECT_EQ(lastUsedString(localTime(2026, 3, 1, 8, 0), now), u"Mar 1"_s);
    EXPECT_EQ(timeString(localTime(2026, 3, 1, 20, 0)), u"8:00 PM"_s);
    QLocale::setDefault(before);
}

} // namespace
} // namespace vellumry
