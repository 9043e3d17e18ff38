#include "palette/CommandPaletteViewModel.h"

#include "notifications/NotificationCenter.h"
#include "palette/ClipboardServiceProtocol.h"
#include "palette/RandomPasswordService.h"
#include "palette/SearchServiceProtocol.h"
#include "storage/StorageServiceProtocol.h"
#include "support/FakeRandomSource.h"
#include "support/LogCapture.h"
#include "support/ManualClock.h"
#include "support/ManualScheduler.h"

#include <QTimeZone>
#include <gtest/gtest.h>

#include <ctime>
#include <memory>

namespace vellumry {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

/// A library in memory.
class FakeStorage final : public StorageServiceProtocol {
public:
    explicit FakeStorage(QStringList& list) : events(list) {}

    std::optional<VellumryData> loadFullData() override { return std::nullopt; }
    void saveFullData(const VellumryData&, bool) override {}
    QList<Snippet> loadSnippets() override
    {
        ++loads;
        return snippets;
    }
    bool saveSnippets(const QList<Snippet>& changed) override
    {
        events.append(u"save"_s);
        if (!isWritable)
            return false;
        snippets = changed;
        return true;
    }
    void deleteCollectionFile(const QString&) override {}
    void renameCollectionFile(const QString&, const QString&) override {}

    QList<Snippet> snippets;
    int loads = 0;
    bool isWritable = true;

private:
    QStringList& events;
};

/// Finds the snippets whose title contains the query, and writes the queries down.
class FakeSearch final : public SearchServiceProtocol {
public:
    QList<Snippet> search(const QString& query, const QList<Snippet>& snippets) const override
    {
        queries.append(query);
        QList<Snippet> result;
        for (const Snippet& snippet : snippets)
            if (snippet.title().contains(query))
                result.append(snippet);
        return result;
    }

    mutable QStringList queries;
};

class FakeClipboard final : public ClipboardServiceProtocol {
public:
    explicit FakeClipboard(QStringList& list) : events(list) {}
    void copy(const QString& text) override { events.append(u"copy "_s + text); }
    void copySecret(const QString& text) override { events.append(u"copy secret "_s + text); }

private:
    QStringList& events;
};

/// Lives in another time zone for a while.
class TimeZone {
public:
    explicit TimeZone(const char* name) : old(qgetenv("TZ")) { set(name); }
    ~TimeZone() { set(old); }
    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;

private:
    static void set(const QByteArray& name)
    {
        if (name.isNull())
            qunsetenv("TZ");
        else
            qputenv("TZ", name);
        tzset();
    }
    QByteArray old;
};

Date at(const char* text)
{
    return parseDate(text).value();
}

Snippet makeSnippet(const QString& title, std::optional<Date> lastUsedAt = std::nullopt,
                    Date updatedAt = {})
{
    Snippet snippet;
    snippet.setId(u"id-"_s + title);
    snippet.setTitle(title);
    snippet.setContent(u"content of "_s + title);
    snippet.setLastUsedAt(lastUsedAt);
    snippet.setUpdatedAt(updatedAt);
    return snippet;
}

QString titles(const QList<Snippet>& snippets)
{
    QStringList result;
    for (const Snippet& snippet : snippets)
        result.append(snippet.title());
    return result.join(u' ');
}

class CommandPaletteViewModelTest : public testing::Test {
protected:
    CommandPaletteViewModelTest()
    {
        const auto note = [this](const QString& event) { events.append(event); };
        QObject::connect(&notifications, &NotificationCenter::openMainWindow, &observer,
                         [=] { note(u"openMainWindow"_s); });
        QObject::connect(&notifications, &NotificationCenter::snippetDataChanged, &observer,
                         [=] { note(u"snippetDataChanged"_s); });
        QObject::connect(
            &notifications, &NotificationCenter::quickSearchShowToast, &observer,
            [=](const std::optional<QString>& text) { note(u"toast "_s + text.value_or(u"-"_s)); });
        QObject::connect(
            &notifications, &NotificationCenter::openSnippetInApp, &observer,
            [=](const std::optional<QString>& id) { note(u"open "_s + id.value_or(u"-"_s)); });
        model = std::make_unique<CommandPaletteViewModel>(
            CommandPaletteViewModel::Dependencies{storage, search, clipboard, passwordService,
                                                  notifications, scheduler, clock},
            [=](const Snippet& snippet) { note(u"select "_s + snippet.title()); },
            [=] { note(u"dismiss"_s); });
    }

    /// Snippets "1" to "count", never used, the first one changed last.
    void fill(int count)
    {
        for (int i = 1; i <= count; ++i)
            storage.snippets.append(
                makeSnippet(QString::number(i), std::nullopt, clock.now() - std::chrono::hours(i)));
    }

    void appear()
    {
        model->onAppear();
        scheduler.advance(50ms);
    }

    void type(const QString& text)
    {
        model->setQuery(text);
        scheduler.advance(50ms);
    }

    QStringList events;
    FakeStorage storage{events};
    FakeSearch search;
    FakeClipboard clipboard{events};
    test::FakeRandomSource randomSource;
    RandomPasswordService passwordService{randomSource};
    NotificationCenter notifications;
    test::ManualScheduler scheduler;
    test::ManualClock clock;
    QObject observer;
    std::unique_ptr<CommandPaletteViewModel> model;
};

TEST_F(CommandPaletteViewModelTest, LoadsNothingBeforeItAppears)
{
    fill(3);
    scheduler.advance(1000ms);
    EXPECT_EQ(storage.loads, 0);
    EXPECT_EQ(model->query(), u""_s);
    EXPECT_TRUE(model->filteredSnippets().isEmpty());
    EXPECT_TRUE(model->todaySnippets().isEmpty());
    EXPECT_EQ(model->selectedIndex(), 0);
    EXPECT_FALSE(model->justCopiedID());
    EXPECT_TRUE(events.isEmpty());
}

TEST_F(CommandPaletteViewModelTest, AnEmptyLibraryHasTheRowThatOpensTheMainWindow)
{
    appear();
    EXPECT_EQ(model->totalItemCount(), 1);
    model->moveSelectionDown();
    EXPECT_EQ(model->selectedIndex(), 0);
    model->selectCurrentItem();
    EXPECT_EQ(events, (QStringList{u"openMainWindow"_s, u"dismiss"_s}));
}

TEST_F(CommandPaletteViewModelTest, AppearingFillsThePanelAtOnce)
{
    fill(3);
    model->onAppear();
    EXPECT_EQ(titles(model->filteredSnippets()), u"1 2 3"_s);
    EXPECT_EQ(model->totalItemCount(), 4);
    EXPECT_EQ(storage.loads, 1);
    scheduler.advance(1000ms);
    EXPECT_EQ(titles(model->filteredSnippets()), u"1 2 3"_s);
    EXPECT_EQ(storage.loads, 1);
}

TEST_F(CommandPaletteViewModelTest, AppearingSearchesTheOldQueryAndThenClearsIt)
{
    fill(12);
    appear();
    type(u"2"_s);
    search.queries.clear();
    storage.snippets.append(makeSnippet(u"22"_s, std::nullopt, clock.now()));

    model->onAppear();
    EXPECT_EQ(search.queries, QStringList{u"2"_s});
    EXPECT_EQ(titles(model->filteredSnippets()), u"2 12 22"_s);
    EXPECT_EQ(model->query(), u""_s);
    EXPECT_EQ(model->selectedIndex(), 0);
    EXPECT_EQ(model->totalItemCount(), 4); // the opening row above the results that stand

    scheduler.advance(49ms);
    EXPECT_EQ(model->filteredSnippets().size(), 3);
    scheduler.advance(1ms);
    EXPECT_EQ(model->filteredSnippets().size(), 13);
    EXPECT_EQ(search.queries.size(), 1);
}

TEST_F(CommandPaletteViewModelTest, AppearingAgainStartsTheDebounceAlsoForAnEmptyField)
{
    appear();
    int results = 0;
    QObject::connect(model.get(), &CommandPaletteViewModel::resultsChanged, &observer,
                     [&] { ++results; });
    model->onAppear();
    EXPECT_EQ(results, 1);
    scheduler.advance(50ms);
    EXPECT_EQ(results, 2);
}

TEST_F(CommandPaletteViewModelTest, TheLibraryIsReadOnlyWhenThePanelAppears)
{
    fill(2);
    appear();
    fill(1);
    type(u"1"_s);
    EXPECT_EQ(titles(model->filteredSnippets()), u"1"_s);
    EXPECT_EQ(storage.loads, 1);
}

TEST_F(CommandPaletteViewModelTest, ASearchRunsAfter50MillisecondsOfQuiet)
{
    fill(3);
    appear();
    for (const QString& text : {u"1"_s, u"12"_s, u"123"_s}) {
        model->setQuery(text);
        scheduler.advance(49ms);
    }
    EXPECT_TRUE(search.queries.isEmpty());
    EXPECT_EQ(model->filteredSnippets().size(), 3);
    scheduler.advance(1ms);
    EXPECT_EQ(search.queries, QStringList{u"123"_s});
    EXPECT_TRUE(model->filteredSnippets().isEmpty());
}

TEST_F(CommandPaletteViewModelTest, EachAssignmentIsSearchedAlsoAnEqualOne)
{
    appear();
    int changes = 0;
    QObject::connect(model.get(), &CommandPaletteViewModel::queryChanged, &observer,
                     [&] { ++changes; });
    type(u"a"_s);
    type(u"a"_s);
    EXPECT_EQ(search.queries, (QStringList{u"a"_s, u"a"_s}));
    EXPECT_EQ(changes, 1);
}

TEST_F(CommandPaletteViewModelTest, TypingPutsTheSelectionBackAfterTheDebounce)
{
    fill(5);
    appear();
    model->moveSelectionDown();
    model->moveSelectionDown();
    model->setQuery(u"1"_s);
    EXPECT_EQ(model->selectedIndex(), 2);
    scheduler.advance(49ms);
    EXPECT_EQ(model->selectedIndex(), 2);
    int moves = 0;
    QObject::connect(model.get(), &CommandPaletteViewModel::selectedIndexChanged, &observer,
                     [&] { ++moves; });
    scheduler.advance(1ms);
    EXPECT_EQ(model->selectedIndex(), 0);
    type(u"12"_s);
    EXPECT_EQ(moves, 1);
}

TEST_F(CommandPaletteViewModelTest, TheSelectionGoesBackOnceTheNewRowsStand)
{
    fill(5);
    appear();
    model->setSelectedIndex(2);
    QList<int> selections;
    QObject::connect(model.get(), &CommandPaletteViewModel::resultsChanged, &observer,
                     [&] { selections.append(model->selectedIndex()); });
    type(u"1"_s);
    EXPECT_EQ(selections, QList{2});
    EXPECT_EQ(model->selectedIndex(), 0);
}

TEST_F(CommandPaletteViewModelTest, TheSelectionGoesBackAlsoWhereTheSameRowsCome)
{
    storage.snippets = {makeSnippet(u"aa"_s), makeSnippet(u"aab"_s)};
    appear();
    type(u"a"_s);
    model->moveSelectionDown();
    type(u"aa"_s);
    EXPECT_EQ(model->filteredSnippets().size(), 2);
    EXPECT_EQ(model->selectedIndex(), 0);
}

TEST_F(CommandPaletteViewModelTest, TheSelectionDoesNotWrap)
{
    fill(2);
    appear();
    model->moveSelectionUp();
    EXPECT_EQ(model->selectedIndex(), 0);
    for (int i = 0; i < 10; ++i)
        model->moveSelectionDown();
    EXPECT_EQ(model->selectedIndex(), 2);
    model->moveSelectionUp();
    EXPECT_EQ(model->selectedIndex(), 1);
}

TEST_F(CommandPaletteViewModelTest, AQueryWithoutHitsHasNoRows)
{
    fill(3);
    appear();
    type(u"nothing"_s);
    EXPECT_EQ(model->totalItemCount(), 0);
    model->moveSelectionDown();
    model->moveSelectionUp();
    EXPECT_EQ(model->selectedIndex(), 0);
    model->selectCurrentItem();
    model->openCurrentItemInApp();
    EXPECT_TRUE(events.isEmpty());
}

TEST_F(CommandPaletteViewModelTest, AtMostTenRowsOfResults)
{
    fill(30);
    appear();
    EXPECT_EQ(model->filteredSnippets().size(), 30);
    EXPECT_EQ(model->totalItemCount(), 11);
    type(u"1"_s);
    EXPECT_EQ(model->filteredSnippets().size(), 12);
    EXPECT_EQ(model->totalItemCount(), 10);
}

TEST_F(CommandPaletteViewModelTest, SevenUsedTodayGiveFiveRowsAndTheFullListRepeatsThem)
{
    fill(6);
    for (int i = 1; i <= 7; ++i)
        storage.snippets.append(
            makeSnippet(u"today%1"_s.arg(i), clock.now() - std::chrono::minutes(i)));
    appear();
    EXPECT_EQ(titles(model->todaySnippets()),
              u"today1 today2 today3 today4 today5 today6 today7"_s);
    EXPECT_EQ(titles(model->filteredSnippets()),
              u"today1 today2 today3 today4 today5 today6 today7 1 2 3 4 5 6"_s);
    EXPECT_EQ(model->totalItemCount(), 1 + 5 + 10);

    // Row 5 is the last of today's, row 6 the first of the full list: the same snippet as row 1.
    const auto copied = [&](int row) {
        events.clear();
        model->setSelectedIndex(row);
        model->selectCurrentItem();
        return events.value(0);
    };
    EXPECT_EQ(copied(1), u"copy content of today1"_s);
    EXPECT_EQ(copied(5), u"copy content of today5"_s);
    EXPECT_EQ(copied(6), u"copy content of today1"_s);
    EXPECT_EQ(copied(15), u"copy content of 3"_s);
}

TEST_F(CommandPaletteViewModelTest, TodaysRowsGoWithAQuery)
{
    storage.snippets = {makeSnippet(u"a"_s, clock.now())};
    appear();
    EXPECT_EQ(model->todaySnippets().size(), 1);
    type(u"a"_s);
    EXPECT_TRUE(model->todaySnippets().isEmpty());
    EXPECT_EQ(model->totalItemCount(), 1);
    type(u""_s);
    EXPECT_EQ(model->todaySnippets().size(), 1);
    EXPECT_EQ(model->totalItemCount(), 3);
}

TEST_F(CommandPaletteViewModelTest, ATrailingEqualsSignIsCutAndTheRestTrimmed)
{
    appear();
    for (const QString& text : {u"2+3="_s, u"10 km="_s, u" \t\u00A0a b\u3000="_s, u"a =="_s, u"="_s,
                                u" ="_s, u"\na\n="_s})
        type(text);
    EXPECT_EQ(search.queries,
              (QStringList{u"2+3"_s, u"10 km"_s, u"a b"_s, u"a ="_s, u""_s, u""_s, u"\na\n"_s}));
}

TEST_F(CommandPaletteViewModelTest, WithoutATrailingEqualsSignTheQueryIsSearchedAsItStands)
{
    appear();
    for (const QString& text :
         {u"10 km"_s, u" a "_s, u"a= "_s, u"a=b"_s, u"/rand:"_s, u"/rand:abc"_s, u" "_s})
        type(text);
    EXPECT_EQ(search.queries, (QStringList{u"10 km"_s, u" a "_s, u"a= "_s, u"a=b"_s, u"/rand:"_s,
                                           u"/rand:abc"_s, u" "_s}));
}

TEST_F(CommandPaletteViewModelTest, AnEmptyQueryIsNotASearch)
{
    fill(3);
    appear();
    type(u"1"_s);
    type(u""_s);
    EXPECT_EQ(search.queries, QStringList{u"1"_s});
    EXPECT_EQ(model->filteredSnippets().size(), 3);
}

TEST_F(CommandPaletteViewModelTest, TheEffectsOfACopyHaveAFixedOrder)
{
    storage.snippets = {makeSnippet(u"a"_s)};
    appear();
    type(u"a"_s);
    clock.advance(5s);
    model->selectCurrentItem();
    EXPECT_EQ(events, (QStringList{u"copy content of a"_s, u"save"_s, u"snippetDataChanged"_s,
                                   u"select a"_s, u"toast Copied to Clipboard"_s, u"dismiss"_s}));
    EXPECT_EQ(storage.snippets[0].usageCount(), 1);
    EXPECT_EQ(storage.snippets[0].lastUsedAt(), clock.now());
    EXPECT_FALSE(model->justCopiedID());
}

TEST_F(CommandPaletteViewModelTest, AFailedSaveLeavesTheCopyAsItWas)
{
    storage.snippets = {makeSnippet(u"a"_s)};
    storage.isWritable = false;
    appear();
    model->copyAndDismiss(model->filteredSnippets()[0]);
    EXPECT_EQ(events, (QStringList{u"copy content of a"_s, u"save"_s, u"snippetDataChanged"_s,
                                   u"select a"_s, u"toast Copied to Clipboard"_s, u"dismiss"_s}));
}

TEST_F(CommandPaletteViewModelTest, PlaceholdersAreFilledWhereThereIsAValue)
{
    Snippet snippet = makeSnippet(u"a"_s);
    snippet.setContent(u"Dear {{ name }}, {{greeting}} {{blank}}"_s);
    snippet.setVariables({{u"name"_s, u"Kim"_s}, {u"blank"_s, u"  "_s}});
    storage.snippets = {snippet};
    appear();
    type(u"a"_s);
    model->selectCurrentItem();
    EXPECT_EQ(events.value(0), u"copy Dear Kim, {{greeting}} {{blank}}"_s);
}

TEST_F(CommandPaletteViewModelTest, ReturnBeforeTheDebounceActsOnTheRowsThatStand)
{
    fill(3);
    appear();
    type(u"2"_s);
    model->setQuery(u"23"_s);
    model->selectCurrentItem();
    EXPECT_EQ(events.value(0), u"copy content of 2"_s);
}

TEST_F(CommandPaletteViewModelTest, ReturnRightAfterTheFirstLetterTakesTheFirstRowThatStands)
{
    // The field is no longer empty, so row 0 is a result row already, over the whole library.
    fill(3);
    appear();
    model->setQuery(u"3"_s);
    EXPECT_EQ(model->totalItemCount(), 3);
    model->selectCurrentItem();
    EXPECT_EQ(events.value(0), u"copy content of 1"_s);
}

TEST_F(CommandPaletteViewModelTest, ARowOutOfRangeDoesNothing)
{
    fill(3);
    appear();
    for (const int row : {-1, 4, 100}) {
        model->setSelectedIndex(row);
        model->selectCurrentItem();
        model->openCurrentItemInApp();
    }
    type(u"1"_s);
    for (const int row : {-1, 1, 100}) {
        model->setSelectedIndex(row);
        model->selectCurrentItem();
        model->openCurrentItemInApp();
    }
    EXPECT_TRUE(events.isEmpty());
}

TEST_F(CommandPaletteViewModelTest, OpeningTheSelectedSnippetInTheMainWindow)
{
    fill(3);
    storage.snippets.append(makeSnippet(u"today"_s, clock.now()));
    appear();
    const auto opened = [&](int row) {
        events.clear();
        model->setSelectedIndex(row);
        model->openCurrentItemInApp();
        return events;
    };
    EXPECT_EQ(opened(0), (QStringList{u"openMainWindow"_s, u"dismiss"_s}));
    EXPECT_EQ(opened(1), (QStringList{u"open id-today"_s, u"dismiss"_s}));
    EXPECT_EQ(opened(2), (QStringList{u"open id-today"_s, u"dismiss"_s}));
    EXPECT_EQ(opened(3), (QStringList{u"open id-1"_s, u"dismiss"_s}));
    type(u"2"_s);
    EXPECT_EQ(opened(0), (QStringList{u"open id-2"_s, u"dismiss"_s}));
    EXPECT_EQ(storage.snippets[1].usageCount(), 0);
}

TEST_F(CommandPaletteViewModelTest, DismissAsksTheOwner)
{
    model->dismiss();
    EXPECT_EQ(events, QStringList{u"dismiss"_s});
}

TEST_F(CommandPaletteViewModelTest, AModelThatIsGoneIsNotSearched)
{
    appear();
    model->setQuery(u"a"_s);
    model.reset();
    scheduler.advance(1000ms);
    EXPECT_TRUE(search.queries.isEmpty());
}

// Passwords

QList<PasswordComplexity> complexities(const QList<PasswordResult>& results)
{
    QList<PasswordComplexity> found;
    for (const PasswordResult& result : results)
        found.append(result.complexity);
    return found;
}

TEST_F(CommandPaletteViewModelTest, ACommandGivesThreePasswordsAndNothingElse)
{
    storage.snippets = {makeSnippet(u"/rand:12"_s)};
    appear();
    type(u"/rand:12"_s);
    EXPECT_EQ(complexities(model->passwordResults()),
              (QList{PasswordComplexity::simple, PasswordComplexity::medium,
                     PasswordComplexity::strong}));
    for (const PasswordResult& result : model->passwordResults())
        EXPECT_EQ(result.password.size(), 12);
    EXPECT_EQ(model->totalItemCount(), 3);
    EXPECT_TRUE(model->filteredSnippets().isEmpty());
    EXPECT_TRUE(model->todaySnippets().isEmpty());
    EXPECT_FALSE(model->calculationResult());
    EXPECT_TRUE(search.queries.isEmpty());
}

TEST_F(CommandPaletteViewModelTest, WhatIsNoCommandGoesOnToTheSearch)
{
    appear();
    for (const QString& text : {u"/rand:"_s, u"/rand:abc"_s, u"/rand:0"_s, u"/rand:-5"_s}) {
        type(text);
        EXPECT_TRUE(model->passwordResults().isEmpty());
    }
    EXPECT_EQ(search.queries,
              (QStringList{u"/rand:"_s, u"/rand:abc"_s, u"/rand:0"_s, u"/rand:-5"_s}));
}

TEST_F(CommandPaletteViewModelTest, EachSearchWithTheCommandMakesNewPasswords)
{
    appear();
    type(u"/rand:64"_s);
    const auto first = model->passwordResults();
    type(u"/rand:64"_s);
    for (int i = 0; i < 3; ++i) {
        EXPECT_NE(model->passwordResults()[i].password, first[i].password);
        EXPECT_NE(model->passwordResults()[i].id, first[i].id);
    }
}

TEST_F(CommandPaletteViewModelTest, PasswordsTakeTheCalculationAway)
{
    appear();
    type(u"10 km="_s);
    EXPECT_TRUE(model->calculationResult());
    type(u"/rand:8"_s);
    EXPECT_FALSE(model->calculationResult());
    type(u"10 km="_s);
    EXPECT_TRUE(model->passwordResults().isEmpty());
    EXPECT_TRUE(model->calculationResult());
}

TEST_F(CommandPaletteViewModelTest, TheEffectsOfCopyingAPasswordHaveAFixedOrder)
{
    storage.snippets = {makeSnippet(u"a"_s)};
    appear();
    type(u"/rand:8"_s);
    model->moveSelectionDown();
    model->moveSelectionDown();
    model->moveSelectionDown();
    EXPECT_EQ(model->selectedIndex(), 2);
    model->selectCurrentItem();
    EXPECT_EQ(events, (QStringList{u"copy secret "_s + model->passwordResults()[2].password,
                                   u"toast Password Copied"_s, u"dismiss"_s}));
    EXPECT_EQ(storage.snippets[0].usageCount(), 0);
}

TEST_F(CommandPaletteViewModelTest, ASelectionOutsideThePasswordsDoesNothing)
{
    appear();
    type(u"/rand:8"_s);
    for (const int index : {3, 99, -1}) {
        model->setSelectedIndex(index);
        model->selectCurrentItem();
    }
    EXPECT_TRUE(events.isEmpty());
}

TEST_F(CommandPaletteViewModelTest, APasswordIsNotOpenedInTheMainWindow)
{
    appear();
    type(u"/rand:8"_s);
    model->openCurrentItemInApp();
    EXPECT_TRUE(events.isEmpty());
}

TEST_F(CommandPaletteViewModelTest, WithoutRandomBytesTheCommandIsSearchedAsText)
{
    const test::LogCapture log;
    storage.snippets = {makeSnippet(u"/rand:8"_s)};
    appear();
    randomSource.isBroken = true;
    type(u"/rand:8"_s);
    EXPECT_TRUE(model->passwordResults().isEmpty());
    EXPECT_EQ(titles(model->filteredSnippets()), u"/rand:8"_s);
    EXPECT_EQ(log.lines,
              QStringList{u"RandomPasswordService: cannot draw random bytes: out of order"_s});
}

TEST_F(CommandPaletteViewModelTest, AppearingOnACommandMakesPasswordsForTheMomentOfTheOldQuery)
{
    fill(2);
    appear();
    type(u"/rand:8"_s);
    const auto before = model->passwordResults();
    model->onAppear();
    EXPECT_EQ(model->query(), u""_s);
    EXPECT_NE(model->passwordResults(), before);
    EXPECT_EQ(model->totalItemCount(), 1);
    model->selectCurrentItem();
    EXPECT_EQ(events, (QStringList{u"openMainWindow"_s, u"dismiss"_s}));
    scheduler.advance(50ms);
    EXPECT_TRUE(model->passwordResults().isEmpty());
    EXPECT_EQ(model->totalItemCount(), 3);
}

TEST_F(CommandPaletteViewModelTest, PasswordsThatStandAreCopiedWhateverTheFieldHolds)
{
    fill(2);
    appear();
    type(u"/rand:8"_s);
    const auto copied = [&](int row) {
        events.clear();
        model->setSelectedIndex(row);
        model->selectCurrentItem();
        return events.value(0);
    };
    model->setQuery(u"2"_s);
    EXPECT_EQ(model->totalItemCount(), 3);
    EXPECT_EQ(copied(0), u"copy secret "_s + model->passwordResults()[0].password);
    // Emptied, the field has its first row back, the others are still passwords.
    model->setQuery({});
    EXPECT_EQ(copied(0), u"openMainWindow"_s);
    EXPECT_EQ(copied(1), u"copy secret "_s + model->passwordResults()[1].password);
}

// Calculations

TEST_F(CommandPaletteViewModelTest, ACalculationStandsAboveTheSnippets)
{
    storage.snippets = {makeSnippet(u"2+3 is five"_s), makeSnippet(u"other"_s)};
    appear();
    type(u"2+3="_s);
    ASSERT_TRUE(model->calculationResult());
    EXPECT_EQ(model->calculationResult()->expression, u"2+3"_s);
    EXPECT_EQ(model->calculationResult()->formattedValue, u"5"_s);
    EXPECT_EQ(search.queries, QStringList{u"2+3"_s});
    EXPECT_EQ(titles(model->filteredSnippets()), u"2+3 is five"_s);
    EXPECT_EQ(model->totalItemCount(), 2);
}

TEST_F(CommandPaletteViewModelTest, AConversionStandsAboveTheSnippets)
{
    storage.snippets = {makeSnippet(u"10 km run"_s)};
    appear();
    type(u"10 km="_s);
    ASSERT_TRUE(model->calculationResult());
    EXPECT_EQ(model->calculationResult()->formattedValue, u"6.2137 miles"_s);
    EXPECT_EQ(titles(model->filteredSnippets()), u"10 km run"_s);
    EXPECT_EQ(model->totalItemCount(), 2);
    type(u"10 km"_s);
    EXPECT_FALSE(model->calculationResult());
    EXPECT_EQ(model->totalItemCount(), 1);
    EXPECT_EQ(search.queries, (QStringList{u"10 km"_s, u"10 km"_s}));
}

TEST_F(CommandPaletteViewModelTest, AConversionComesBeforeArithmetic)
{
    // The sign is an operator, so this would be a calculation too, if a failing one.
    const test::LogCapture log;
    appear();
    type(u"-40 f="_s);
    ASSERT_TRUE(model->calculationResult());
    EXPECT_EQ(model->calculationResult()->formattedValue, u"-40 °C"_s);
    EXPECT_TRUE(log.lines.isEmpty());
}

TEST_F(CommandPaletteViewModelTest, ACalculationThatFailsTakesTheRowAway)
{
    const test::LogCapture log;
    appear();
    for (const QString& text : {u"2+="_s, u"1/0="_s, u"2+x="_s, u"5="_s, u""_s}) {
        type(u"2+3="_s);
        EXPECT_TRUE(model->calculationResult());
        type(text);
        EXPECT_FALSE(model->calculationResult()) << qPrintable(text);
    }
}

TEST_F(CommandPaletteViewModelTest, TheEffectsOfCopyingAResultHaveAFixedOrder)
{
    storage.snippets = {makeSnippet(u"10 km"_s)};
    appear();
    type(u"10 km="_s);
    model->selectCurrentItem();
    EXPECT_EQ(events,
              (QStringList{u"copy 6.2137 miles"_s, u"toast 6.2137 miles Copied"_s, u"dismiss"_s}));
    EXPECT_EQ(storage.snippets[0].usageCount(), 0);
}

TEST_F(CommandPaletteViewModelTest, WithoutACalculationThereIsNoResultToCopy)
{
    appear();
    type(u"10 km"_s);
    model->copyCalculatorResult();
    EXPECT_TRUE(events.isEmpty());
}

TEST_F(CommandPaletteViewModelTest, BelowACalculationTheSnippetsCountFromOne)
{
    for (int i = 0; i < 12; ++i)
        storage.snippets.append(makeSnippet(u"1+1 no %1"_s.arg(i)));
    appear();
    type(u"1+1="_s);
    EXPECT_EQ(model->totalItemCount(), 11);
    const auto copied = [&](int row) {
        events.clear();
        model->setSelectedIndex(row);
        model->selectCurrentItem();
        return events.value(0);
    };
    EXPECT_EQ(copied(0), u"copy 2"_s);
    EXPECT_EQ(copied(1), u"copy content of 1+1 no 0"_s);
    EXPECT_EQ(copied(10), u"copy content of 1+1 no 9"_s);
}

TEST_F(CommandPaletteViewModelTest, OpeningBelowACalculationOpensTheNextRow)
{
    for (int i = 0; i < 3; ++i)
        storage.snippets.append(makeSnippet(u"1+1 no %1"_s.arg(i)));
    appear();
    type(u"1+1="_s);
    const auto opened = [&](int row) {
        events.clear();
        model->setSelectedIndex(row);
        model->openCurrentItemInApp();
        return events;
    };
    EXPECT_EQ(opened(0), (QStringList{u"open id-1+1 no 0"_s, u"dismiss"_s}));
    EXPECT_EQ(opened(1), (QStringList{u"open id-1+1 no 1"_s, u"dismiss"_s}));
    EXPECT_EQ(opened(2), (QStringList{u"open id-1+1 no 2"_s, u"dismiss"_s}));
    EXPECT_TRUE(opened(3).isEmpty()); // the last row, below which there is none
}

TEST_F(CommandPaletteViewModelTest, AResultWithoutSnippetsIsTheOnlyRow)
{
    appear();
    type(u"2*3="_s);
    EXPECT_EQ(model->totalItemCount(), 1);
    model->moveSelectionDown();
    EXPECT_EQ(model->selectedIndex(), 0);
    model->openCurrentItemInApp();
    EXPECT_TRUE(events.isEmpty());
    model->selectCurrentItem();
    EXPECT_EQ(events.value(0), u"copy 6"_s);
}

TEST_F(CommandPaletteViewModelTest, ReturnBeforeTheDebounceCopiesTheCalculationThatStands)
{
    appear();
    type(u"2+3="_s);
    model->setQuery(u"2+34="_s);
    model->selectCurrentItem();
    EXPECT_EQ(events.value(0), u"copy 5"_s);
}

TEST_F(CommandPaletteViewModelTest, AnEmptiedFieldHasNoCalculationAboveTheSnippetsThatStand)
{
    storage.snippets = {makeSnippet(u"2+3 a"_s), makeSnippet(u"2+3 b"_s)};
    appear();
    type(u"2+3="_s);
    model->onAppear();
    ASSERT_TRUE(model->calculationResult());
    EXPECT_EQ(model->totalItemCount(), 3); // the opening row and the two snippets
    const auto happens = [&](int row, void (CommandPaletteViewModel::*action)()) {
        events.clear();
        model->setSelectedIndex(row);
        (model.get()->*action)();
        return events.value(0);
    };
    EXPECT_EQ(happens(0, &CommandPaletteViewModel::selectCurrentItem), u"openMainWindow"_s);
    EXPECT_EQ(happens(1, &CommandPaletteViewModel::selectCurrentItem), u"copy content of 2+3 a"_s);
    EXPECT_EQ(happens(2, &CommandPaletteViewModel::selectCurrentItem), u"copy content of 2+3 b"_s);
    EXPECT_EQ(happens(0, &CommandPaletteViewModel::openCurrentItemInApp), u"openMainWindow"_s);
    EXPECT_EQ(happens(1, &CommandPaletteViewModel::openCurrentItemInApp), u"open id-2+3 a"_s);
}

TEST_F(CommandPaletteViewModelTest, WhatCannotBeCalculatedGivesNoRow)
{
    const test::LogCapture log;
    appear();
    for (const QString& text : {u"((((((((((((((((((((((((((((((((((((((((((((((((1="_s,
                                u"1)="_s,
                                u"^^^^1="_s,
                                u"1^="_s,
                                u"'1+"_s,
                                u"\"\\u{1+=\""_s,
                                u"[1]="_s,
                                u"1,2="_s,
                                u"0x="_s,
                                u"1e999*1="_s,
                                u"9999999999^9999999999="_s,
                                QString(QChar(0xD800)) + u"1+1="_s,
                                u"1+\u0000="_s,
                                u"/rand:8="_s,
                                u"=="_s,
                                u"1=="_s,
                                u"1+1=="_s,
                                u"½+1="_s,
                                u"max(1)="_s,
                                u"1 km/h="_s}) {
        type(text);
        EXPECT_FALSE(model->calculationResult()) << qPrintable(text);
        EXPECT_EQ(model->totalItemCount(), 0);
    }
}

// The order of the empty query.

TEST_F(CommandPaletteViewModelTest, UsedSnippetsComeFirstThenTheNeverUsed)
{
    const Date now = clock.now();
    storage.snippets = {makeSnippet(u"old"_s, std::nullopt, now - 2h),
                        makeSnippet(u"usedLong"_s, now - 300h, now),
                        makeSnippet(u"new"_s, std::nullopt, now - 1h),
                        makeSnippet(u"used"_s, now - 200h, now - 500h),
                        makeSnippet(u"future"_s, now + 100h, now),
                        makeSnippet(u"epoch"_s, Date{}, now)};
    appear();
    EXPECT_EQ(titles(model->filteredSnippets()), u"future used usedLong epoch new old"_s);
    EXPECT_TRUE(model->todaySnippets().isEmpty());
}

TEST_F(CommandPaletteViewModelTest, TiesStayInLibraryOrder)
{
    const Date now = clock.now();
    for (int i = 0; i < 100; ++i)
        storage.snippets.append(
            makeSnippet(QString::number(i), i % 2 == 0 ? std::optional(now) : std::nullopt, now));
    QStringList expected;
    for (const int start : {0, 1})
        for (int i = start; i < 100; i += 2)
            expected.append(QString::number(i));
    appear();
    EXPECT_EQ(titles(model->filteredSnippets()), expected.join(u' '));
}

TEST_F(CommandPaletteViewModelTest, DatesAreComparedToTheNanosecond)
{
    const Date now = clock.now();
    storage.snippets = {makeSnippet(u"a"_s, now), makeSnippet(u"b"_s, now + 1ns)};
    appear();
    EXPECT_EQ(titles(model->filteredSnippets()), u"b a"_s);
    EXPECT_EQ(titles(model->todaySnippets()), u"b a"_s);
}

TEST_F(CommandPaletteViewModelTest, ACopiedSnippetIsOnTopAtTheNextOpening)
{
    fill(30);
    appear();
    model->setSelectedIndex(3);
    model->selectCurrentItem();
    clock.advance(10s);
    appear();
    EXPECT_EQ(titles(model->todaySnippets()), u"3"_s);
    EXPECT_EQ(titles(model->filteredSnippets()).left(9), u"3 1 2 4 5"_s);
    EXPECT_EQ(model->filteredSnippets().size(), 30);
}

// Used today.

class TodayTest : public CommandPaletteViewModelTest {
protected:
    /// Whether a snippet used at `used` counts as used today at `now`.
    bool isToday(const char* used, const char* now)
    {
        storage.snippets = {makeSnippet(u"a"_s, at(used))};
        clock.time = at(now);
        appear();
        return model->todaySnippets().size() == 1;
    }
};

TEST_F(TodayTest, IsTheSameCalendarDay)
{
    const TimeZone zone("UTC");
    EXPECT_TRUE(isToday("2026-03-09T00:00:00.000Z", "2026-03-09T23:59:59.999Z"));
    EXPECT_TRUE(isToday("2026-03-09T23:59:59.999Z", "2026-03-09T00:00:00.000Z"));
    EXPECT_FALSE(isToday("2026-03-08T23:59:59.999Z", "2026-03-09T00:00:00.000Z"));
    EXPECT_FALSE(isToday("2026-03-10T00:00:00.000Z", "2026-03-09T23:59:59.999Z"));
    EXPECT_FALSE(isToday("2026-03-09T12:00:00Z", "2027-03-09T12:00:00Z"));
}

TEST_F(TodayTest, EndsWhenTheDayDoesAndNotWithTheLibrary)
{
    const TimeZone zone("UTC");
    EXPECT_TRUE(isToday("2026-03-09T23:59:00Z", "2026-03-09T23:59:30Z"));
    clock.advance(60s);
    type(u""_s);
    EXPECT_TRUE(model->todaySnippets().isEmpty());
    EXPECT_EQ(model->filteredSnippets().size(), 1);
}

TEST_F(TodayTest, IsTheDayOfTheLocalTimeZone)
{
    {
        const TimeZone zone("Asia/Shanghai"); // UTC+8
        EXPECT_TRUE(isToday("2026-03-08T16:00:00Z", "2026-03-09T15:59:59Z"));
        EXPECT_FALSE(isToday("2026-03-08T15:59:59Z", "2026-03-09T15:59:59Z"));
        EXPECT_FALSE(isToday("2026-03-09T16:00:00Z", "2026-03-09T15:59:59Z"));
    }
    {
        const TimeZone zone("Asia/Kathmandu"); // UTC+5:45
        EXPECT_TRUE(isToday("2026-03-08T18:15:00Z", "2026-03-09T18:14:59Z"));
        EXPECT_FALSE(isToday("2026-03-08T18:14:59Z", "2026-03-09T18:14:59Z"));
    }
    {
        const TimeZone zone("Pacific/Pago_Pago"); // UTC-11
        EXPECT_TRUE(isToday("2026-03-09T11:00:00Z", "2026-03-10T10:59:59Z"));
        EXPECT_FALSE(isToday("2026-03-09T10:59:59Z", "2026-03-10T10:59:59Z"));
    }
}

TEST_F(TodayTest, MayHave23Or25Hours)
{
    const TimeZone zone("Europe/Berlin");
    // 2026-03-29 starts at 23:00Z and ends at 22:00Z.
    EXPECT_TRUE(isToday("2026-03-28T23:00:00Z", "2026-03-29T21:59:59Z"));
    EXPECT_FALSE(isToday("2026-03-28T22:59:59Z", "2026-03-29T12:00:00Z"));
    EXPECT_FALSE(isToday("2026-03-29T22:00:00Z", "2026-03-29T21:59:59Z"));
    // 2026-10-25 starts at 22:00Z and ends at 23:00Z.
    EXPECT_TRUE(isToday("2026-10-24T22:00:00Z", "2026-10-25T22:59:59Z"));
    EXPECT_FALSE(isToday("2026-10-24T21:59:59Z", "2026-10-25T12:00:00Z"));
    EXPECT_FALSE(isToday("2026-10-25T23:00:00Z", "2026-10-25T12:00:00Z"));
}

TEST_F(TodayTest, MayLackItsMidnight)
{
    const TimeZone zone("America/Sao_Paulo");
    // On 2018-11-04 the clocks went from 00:00 to 01:00, at 03:00Z.
    EXPECT_TRUE(isToday("2018-11-04T03:00:00Z", "2018-11-05T01:59:59Z"));
    EXPECT_FALSE(isToday("2018-11-04T02:59:59Z", "2018-11-04T12:00:00Z"));
    EXPECT_FALSE(isToday("2018-11-05T02:00:00Z", "2018-11-04T12:00:00Z"));
    EXPECT_TRUE(isToday("2018-11-04T02:59:59Z", "2018-11-03T12:00:00Z"));
    // On 2018-02-17 they went from 24:00 back to 23:00, at 02:00Z of the next day.
    EXPECT_TRUE(isToday("2018-02-18T02:59:59Z", "2018-02-17T12:00:00Z"));
    EXPECT_FALSE(isToday("2018-02-18T03:00:00Z", "2018-02-17T12:00:00Z"));
}

TEST_F(TodayTest, NeverUsedIsNotToday)
{
    const TimeZone zone("UTC");
    clock.time = Date{};
    storage.snippets = {makeSnippet(u"a"_s)};
    appear();
    EXPECT_TRUE(model->todaySnippets().isEmpty());
}

} // namespace
} // namespace vellumry
