// The states of the main window as pictures. With VELLUMRY_SCREENSHOTS set to a folder they are
// written there, to be looked at; in any case each must show what it is about.

#include "views/MainFixture.h"
#include "views/common/PillToast.h"
#include "views/common/PopupMenu.h"

#include <QDir>
#include <QImage>
#include <QMenuBar>
#include <QSet>

namespace vellumry::test {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

class MainContentPictures : public MainFixture {
protected:
    void loadOffice()
    {
        QList<SyncCollection> collections;
        const QList<std::pair<QString, QString>> colors{
            {u"Customer Replies"_s, u"blue"_s}, {u"SQL & Data"_s, u"purple"_s},
            {u"Shell"_s, u"green"_s},           {u"Regex"_s, u"orange"_s},
            {u"Meetings"_s, u"yellow"_s},       {u"Addresses"_s, u"teal"_s},
            {u"Releases"_s, u"pink"_s},         {u"Code Review"_s, u"indigo"_s},
            {u"Travel"_s, u"cyan"_s},           {u"Legal"_s, u"red"_s},
            {u"Default"_s, u"gray"_s}};
        QMap<QString, QString> stored;
        for (const auto& [name, color] : colors) {
            collections.append(makeCollection(u"C-"_s + name, name));
            stored.insert(name, color);
        }
        world.colors.saveColors(stored);
        world.load(
            collections,
            {card(u"Refund confirmation"_s, u"Polite reply after an approved refund"_s,
                  u"Customer Replies"_s, 0, 12min),
             card(u"Slowest queries today"_s, u"Top statements by total time"_s, u"SQL & Data"_s, 1,
                  1h),
             card(u"Find large files"_s, u"Sorted by size, human readable"_s, u"Shell"_s, 2, 3h),
             card(u"Weekly sync notes"_s, u"Agenda, decisions, owners"_s, u"Meetings"_s, 3, 26h),
             card(u"ISO 8601 timestamp"_s, u"With optional fraction and offset"_s, u"Regex"_s, 4,
                  50h),
             card(u"Delivery address"_s, u"Name, floor and a note for the courier"_s,
                  u"Addresses"_s, 5, 100h),
             card(u"Release checklist.md"_s, u"From freeze to announcement"_s, u"Releases"_s, 6,
                  24h * 8),
             card(u"Kind review nudge"_s, {}, u"Code Review"_s, 7, 24h * 15),
             card(u"Delay apology"_s, u"New date, no excuses"_s, u"Customer Replies"_s, 8,
                  24h * 22),
             card(u"Undo last commit, keep work"_s, u"Soft reset by one"_s, u"Shell"_s, 9,
                  24h * 40)});
    }

    void picture(const QString& name)
    {
        for (const auto scheme : {ColorScheme::light, ColorScheme::dark}) {
            theme.setScheme(scheme);
            QApplication::processEvents();
            const QImage image = content().grab().toImage();
            QSet<QRgb> colors;
            for (int y = 0; y < image.height(); y += 3)
                for (int x = 0; x < image.width(); x += 3)
                    colors.insert(image.pixel(x, y));
            EXPECT_GT(colors.size(), 20) << "a blank picture";
            save(image, name + (scheme == ColorScheme::dark ? u"-dark"_s : u"-light"_s));
        }
        theme.setScheme(ColorScheme::light);
    }

    static void save(const QImage& image, const QString& name)
    {
        const QString folder = qEnvironmentVariable("VELLUMRY_SCREENSHOTS");
        if (folder.isEmpty())
            return;
        EXPECT_TRUE(QDir().mkpath(folder));
        EXPECT_TRUE(image.save(folder + u'/' + name + u".png"_s));
    }
};

TEST_F(MainContentPictures, MainWindow)
{
    loadOffice();
    open();
    QMenuBar bar;
    content().setMenuBar(bar);
    clickCard(u"Refund confirmation"_s);
    picture(u"main-window"_s);
}

TEST_F(MainContentPictures, SidebarWithTheKeys)
{
    loadOffice();
    open();
    clickRow(sidebar().collectionRow(u"Shell"_s));
    picture(u"sidebar-keys"_s);
}

TEST_F(MainContentPictures, Unsaved)
{
    loadOffice();
    open();
    editTitle(u"Refund confirmation"_s, u"Refund confirmation"_s);
    editTitle(u"Release checklist.md"_s, u"Release checklist.md"_s);
    clickCard(u"Find large files"_s);
    key(Qt::Key_C, Qt::ControlModifier);
    clickCard(u"Refund confirmation"_s);
    picture(u"main-unsaved"_s);
    clickRow(sidebar().unsavedRow());
    picture(u"main-unsaved-filter"_s);
}

TEST_F(MainContentPictures, FilterAndPlaceholder)
{
    loadOffice();
    open();
    clickRow(sidebar().collectionRow(u"Customer Replies"_s));
    click(sidebar().addButton());
    pass(100ms);
    type(u"Onboarding"_s);
    world.notifications.focusSnippetSearch();
    type(u"re"_s);
    picture(u"main-filter-placeholder"_s);
}

TEST_F(MainContentPictures, Welcome)
{
    open();
    picture(u"welcome"_s);
}

TEST_F(MainContentPictures, Sheets)
{
    loadOffice();
    open();
    clickCard(u"Refund confirmation"_s);
    const auto menuAction = [&](const QString& text) {
        std::unique_ptr<PopupMenu> menu(sidebar().collectionRow(u"Releases"_s)->makeMenu());
        for (QAction* action : menu->findChildren<QAction*>())
            if (action->text() == text)
                action->trigger();
        pass(200ms);
    };
    menuAction(u"Rename"_s);
    type(u"Release Notes"_s);
    picture(u"rename-sheet"_s);
    key(Qt::Key_Escape);
    menuAction(u"Custom..."_s);
    picture(u"custom-color-sheet"_s);
    key(Qt::Key_Escape);
    menuAction(u"Delete"_s);
    picture(u"delete-collection-alert"_s);
    key(Qt::Key_Escape);
    model.requestDelete(u"id-Refund confirmation"_s);
    picture(u"delete-snippet-alert"_s);
}

TEST_F(MainContentPictures, Menus)
{
    loadOffice();
    open();
    for (const auto scheme : {ColorScheme::light, ColorScheme::dark}) {
        theme.setScheme(scheme);
        std::unique_ptr<PopupMenu> menu(sidebar().collectionRow(u"Releases"_s)->makeMenu());
        menu->popup({0, 0});
        menu->setActiveAction(menu->actions().constFirst());
        const QString tail = scheme == ColorScheme::dark ? u"-dark"_s : u"-light"_s;
        save(menu->grab().toImage(), u"collection-menu"_s + tail);
        auto* colors = menu->findChild<PopupMenu*>();
        colors->popup({300, 0});
        colors->setActiveAction(colors->actions().at(9));
        const QImage image = colors->grab().toImage();
        save(image, u"color-menu"_s + tail);
        const QColor teal = CategoryColorService::presetColors()[9].color;
        const QRect row = colors->actionGeometry(colors->actions().at(9));
        EXPECT_EQ(image.pixelColor(QPoint(17, row.center().y()) * image.devicePixelRatio()).rgb(),
                  teal.rgb());
        colors->hide();
        menu->hide();
    }
}

TEST_F(MainContentPictures, ImportPill)
{
    loadOffice();
    open();
    content().showImportResult(u"checkmark"_s, u"Imported 12 snippets"_s);
    picture(u"import-pill"_s);
    content().showImportResult(u"xmark"_s, u"Import failed: Invalid file format"_s);
    picture(u"import-pill-failure"_s);
}

TEST_F(MainContentPictures, Drag)
{
    loadOffice();
    open();
    QWidget* viewport = cards().viewport();
    const QPoint from = middleOf(u"Find large files"_s);
    QTest::mousePress(viewport, Qt::LeftButton, {}, from);
    QTest::mouseMove(viewport, from + QPoint(10, 20));
    QTest::mouseMove(viewport, middleOf(u"Weekly sync notes"_s) + QPoint(40, 0));
    picture(u"main-drag-reorder"_s);
    QTest::mouseRelease(viewport, Qt::LeftButton, {}, middleOf(u"Find large files"_s));
}

TEST_F(MainContentPictures, TheWorldsTexts)
{
    world.load(
        {makeCollection(u"1"_s, u"日本語コレクション"_s),
         makeCollection(u"2"_s, u"مجموعة النصوص القصيرة الطويلة جدا جدا"_s),
         makeCollection(u"3"_s, u"Emoji 🎉👩‍👩‍👧‍👦🇩🇪"_s)},
        {card(u"はじめまして、株式会社サンプルの山田と申します。よろしくお願いいたします"_s,
              u"ビジネスメールの冒頭"_s, u"日本語コレクション"_s, 0, 12min),
         card(u"مرحبا بك في خدمة العملاء"_s, u"رد مهذب بعد الموافقة"_s,
              u"مجموعة النصوص القصيرة الطويلة جدا جدا"_s, 1, 3h),
         card(u"Party 🎉👩‍👩‍👧‍👦 time"_s, u"👍🏽 thumbs 🇩🇪 flags"_s,
              u"Emoji 🎉👩‍👩‍👧‍👦🇩🇪"_s, 2, 26h),
         card(u"שלום עולם"_s, {}, u"日本語コレクション"_s, 3, 26h),
         card(QString(400, u'w'), QString(200, u'm'), u"日本語コレクション"_s, 4, 26h)});
    open();
    editTitle(u"Party 🎉👩‍👩‍👧‍👦 time"_s,
              u"Party 🎉👩‍👩‍👧‍👦 time, with a title that is too long for it"_s);
    clickRow(sidebar().allRow());
    picture(u"world-texts"_s);
}

TEST_F(MainContentPictures, LargeText)
{
    loadOffice();
    theme.setTextScale(1.6);
    open();
    clickCard(u"Refund confirmation"_s);
    picture(u"large-text"_s);
}

} // namespace
} // namespace vellumry::test
