#include "views/window/ApplicationMenus.h"

#include "views/MainFixture.h"
#include "views/common/PopupMenu.h"

#include <QAction>
#include <QMainWindow>
#include <QMenuBar>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;

/// The contents in a window with a menu bar.
class ApplicationMenusTest : public MainFixture {
protected:
    ApplicationMenusTest()
    {
        add(application, u"Quit"_s, Qt::CTRL | Qt::Key_Q);
        add(file, u"New Snippet"_s, Qt::CTRL | Qt::Key_N);
        file.addSeparator();
        add(file, u"Import"_s, Qt::CTRL | Qt::SHIFT | Qt::Key_I);
        add(view, u"Toggle Sidebar"_s, Qt::CTRL | Qt::META | Qt::Key_S);
        for (QMenu* menu : {&application, &file, &view})
            window.menuBar()->addMenu(menu);
        window.setCentralWidget(&content());
        content().setMenuBar(*window.menuBar());
    }
    ~ApplicationMenusTest() override { window.takeCentralWidget(); }

    void add(QMenu& menu, const QString& text, const QKeySequence& keys)
    {
        QAction* action = menu.addAction(text);
        action->setShortcut(keys);
        QObject::connect(action, &QAction::triggered, &window, [this, text] { done.append(text); });
    }
    void openWindow()
    {
        QCursor::setPos({5000, 5000});
        window.resize(1024, 680);
        window.show();
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        QApplication::processEvents();
    }
    void openLibrary()
    {
        loadFour();
        openWindow();
        clickCard(u"One"_s);
    }
    QWidget* focus() { return window.focusWidget(); }
    void press(Qt::Key which, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyPress(focus() ? focus() : &window, which, modifiers);
    }
    void release(Qt::Key which) { QTest::keyRelease(focus() ? focus() : &window, which); }
    void pressF10() { QTest::keyClick(focus() ? focus() : &window, Qt::Key_F10); }
    QMenu& barMenu(qsizetype index) { return *window.menuBar()->actions().at(index)->menu(); }
    PopupMenu& menuList() { return *content().menus().list(); }
    bool isButtonVisible() { return sidebar().menuButton()->isVisible(); }
    bool isBarVisible() { return window.menuBar()->isVisible(); }

    QMenu application{u"Vellumry"_s};
    QMenu file{u"File"_s};
    QMenu view{u"View"_s};
    QMainWindow window;
    QStringList done;
};

TEST_F(ApplicationMenusTest, TheBarShowsOnlyWhereTheButtonDoesNot)
{
    openWindow();
    EXPECT_TRUE(content().isWelcoming());
    EXPECT_TRUE(isBarVisible());
    EXPECT_FALSE(isButtonVisible());

    loadFour();
    EXPECT_FALSE(isBarVisible());
    EXPECT_TRUE(isButtonVisible());
    EXPECT_TRUE(QTest::qWaitFor([&] { return content().y() == 0; })) << "the window is theirs";

    sidebar().hide();
    EXPECT_TRUE(isBarVisible());
    sidebar().show();
    EXPECT_FALSE(isBarVisible());
    EXPECT_TRUE(isButtonVisible());
}

TEST_F(ApplicationMenusTest, TheListHoldsAllCommandsAndTheApplicationsOwnLast)
{
    openLibrary();
    QStringList texts;
    for (const QAction* action : menuList().actions())
        texts.append(action->isSeparator() ? u"-"_s : action->text());
    EXPECT_EQ(texts, QStringList({u"New Snippet"_s, u"-"_s, u"Import"_s, u"-"_s,
                                  u"Toggle Sidebar"_s, u"-"_s, u"Quit"_s}));
}

TEST_F(ApplicationMenusTest, F10OpensTheListAndReturnChooses)
{
    openLibrary();
    list().searchField().textField().setFocus();
    QWidget* before = focus();
    pressF10();
    ASSERT_TRUE(menuList().isVisible());
    EXPECT_EQ(menuList().activeAction()->text(), u"New Snippet"_s);
    QTest::keyClick(&menuList(), Qt::Key_Down);
    QTest::keyClick(&menuList(), Qt::Key_Return);
    EXPECT_FALSE(menuList().isVisible());
    EXPECT_EQ(done, QStringList{u"Import"_s});
    EXPECT_EQ(focus(), before);
}

TEST_F(ApplicationMenusTest, AfterEscapeTheKeysGoWhereTheyWent)
{
    openLibrary();
    list().searchField().textField().setFocus();
    QWidget* before = focus();
    pressF10();
    QTest::keyClick(&menuList(), Qt::Key_Escape);
    EXPECT_FALSE(menuList().isVisible());
    EXPECT_EQ(focus(), before);
    EXPECT_TRUE(before->hasFocus());
    EXPECT_TRUE(done.isEmpty());
}

TEST_F(ApplicationMenusTest, AltAloneOpensTheList)
{
    openLibrary();
    press(Qt::Key_Alt, Qt::AltModifier);
    EXPECT_FALSE(menuList().isVisible()) << "it may be the beginning of a combination";
    release(Qt::Key_Alt);
    EXPECT_TRUE(menuList().isVisible());
}

TEST_F(ApplicationMenusTest, AltWithSomethingElseOpensNothing)
{
    openLibrary();
    press(Qt::Key_Alt, Qt::AltModifier);
    press(Qt::Key_X, Qt::AltModifier);
    release(Qt::Key_X);
    release(Qt::Key_Alt);
    EXPECT_FALSE(menuList().isVisible());

    press(Qt::Key_Alt, Qt::AltModifier);
    clickCard(u"Two"_s);
    release(Qt::Key_Alt);
    EXPECT_FALSE(menuList().isVisible());

    press(Qt::Key_Alt, Qt::AltModifier | Qt::ControlModifier);
    release(Qt::Key_Alt);
    EXPECT_FALSE(menuList().isVisible());

    // The hot key's letter goes to nobody; its palette comes.
    press(Qt::Key_Alt, Qt::AltModifier);
    QWidget palette(nullptr, Qt::Tool);
    palette.setAttribute(Qt::WA_ShowWithoutActivating);
    palette.show();
    release(Qt::Key_Alt);
    EXPECT_FALSE(menuList().isVisible());
}

TEST_F(ApplicationMenusTest, WithoutTheButtonF10OpensTheBar)
{
    openWindow();
    QWidget* before = focus();
    pressF10();
    EXPECT_TRUE(barMenu(0).isVisible());
    EXPECT_TRUE(qobject_cast<PopupMenu*>(&barMenu(0))) << "in the look of the others";
    QTest::keyClick(&barMenu(0), Qt::Key_Right);
    EXPECT_TRUE(barMenu(1).isVisible());
    QTest::keyClick(&barMenu(1), Qt::Key_Escape);
    EXPECT_FALSE(barMenu(1).isVisible());
    if (window.menuBar()->hasFocus()) // the bar keeps the keys until it is left as well
        QTest::keyClick(window.menuBar(), Qt::Key_Escape);
    EXPECT_EQ(focus(), before);
    EXPECT_FALSE(window.menuBar()->hasFocus());
}

TEST_F(ApplicationMenusTest, ASheetHasTheKeys)
{
    openLibrary();
    model.requestDelete(u"id-One"_s);
    ASSERT_TRUE(sheets().isPresenting());
    pressF10();
    press(Qt::Key_Alt, Qt::AltModifier);
    release(Qt::Key_Alt);
    EXPECT_FALSE(menuList().isVisible());
    EXPECT_FALSE(barMenu(0).isVisible());
}

TEST_F(ApplicationMenusTest, BesideASheetTheBarOffersTheApplicationsOwnMenuAlone)
{
    openWindow();
    ASSERT_TRUE(isBarVisible());
    const auto offered = [this] {
        QStringList titles;
        for (const QAction* each : window.menuBar()->actions()) {
            if (each->isEnabled())
                titles.append(each->text());
        }
        return titles;
    };
    const QStringList all{u"Vellumry"_s, u"File"_s, u"View"_s};
    EXPECT_EQ(offered(), all);
    auto* sheet = new QWidget;
    sheets().present(sheet, {});
    EXPECT_EQ(offered(), QStringList{u"Vellumry"_s});
    auto* bar = new QMenuBar;
    for (QMenu* menu : {&application, &file, &view})
        bar->addMenu(menu);
    window.setMenuBar(bar);
    content().setMenuBar(*bar);
    EXPECT_EQ(offered(), QStringList{u"Vellumry"_s}) << "another bar";
    sheets().dismiss(sheet);
    EXPECT_EQ(offered(), all);
}

TEST_F(ApplicationMenusTest, AnotherBarTakesThePlaceOfTheFirst)
{
    openLibrary();
    auto* bar = new QMenuBar;
    bar->addMenu(&view);
    window.setMenuBar(bar);
    content().setMenuBar(*bar);
    EXPECT_FALSE(bar->isVisible());
    ASSERT_EQ(menuList().actions().size(), 1);
    pressF10();
    EXPECT_TRUE(menuList().isVisible());
    menuList().close();
    sidebar().hide();
    EXPECT_TRUE(bar->isVisible());
}

TEST_F(ApplicationMenusTest, WhenTheBarHasGoneTheListIsLeft)
{
    openLibrary();
    delete window.menuBar();
    pressF10();
    EXPECT_TRUE(menuList().isVisible());
    menuList().close();
    sidebar().hide();
    pressF10();
    EXPECT_FALSE(menuList().isVisible());
}

TEST_F(ApplicationMenusTest, TheListShowsTheKeys)
{
    openLibrary();
    const auto isInked = [&](const QImage& image, const QRect& place) {
        const qreal ratio = image.devicePixelRatio();
        for (int y = int(place.top() * ratio); y < int(place.bottom() * ratio); ++y)
            for (int x = int(place.left() * ratio); x < int(place.right() * ratio); ++x)
                if (image.pixelColor(x, y) == theme.colors().textTertiary)
                    return true;
        return false;
    };
    sidebar().openApplicationMenu();
    const QImage image = menuList().grab().toImage();
    QAction* toggle = menuList().actions().at(4);
    const QRect row = menuList().actionGeometry(toggle);
    const int keysWidth =
        QFontMetrics(theme.font(TextStyle::label)).horizontalAdvance(u"Ctrl+Super+S"_s);
    const QRect keys(row.right() - 10 - keysWidth, row.y(), keysWidth, row.height());
    EXPECT_TRUE(isInked(image, keys));
    EXPECT_FALSE(isInked(image, row.adjusted(10, 0, -11 - keysWidth, 0)));
    const int textWidth =
        QFontMetrics(theme.font(TextStyle::body)).horizontalAdvance(toggle->text());
    EXPECT_GE(keys.left() - row.left() - 9 - textWidth, 16) << "with room between";
}

} // namespace
} // namespace vellumry::test
