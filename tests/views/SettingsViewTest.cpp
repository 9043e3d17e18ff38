#include "sync/ConflictResolution.h"
#include "views/MainFixture.h"
#include "views/SettingsFixture.h"
#include "views/ShownToolTip.h"
#include "views/common/SheetHost.h"
#include "views/sheets/ConflictResolutionSheet.h"

#include <QAccessible>
#include <QAction>
#include <QImage>
#include <QScreen>
#include <QSignalSpy>

#include <algorithm>
#include <cerrno>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;
using hotkey::ModifierFlags;

using SettingsViewTest = SettingsFixture;

// What it says

TEST_F(SettingsViewTest, TheTextsOfTheSections)
{
    world.service().startFileWatching();
    open();
    EXPECT_EQ(view().sizeHint(), QSize(500, 720));
    EXPECT_EQ(view().size(), QSize(500, std::min(720, window->screen()->availableSize().height())));
    EXPECT_EQ(window->windowTitle(), u"Settings"_s);
    const QStringList expected{
        u"GENERAL"_s,
        u"Appearance"_s,
        u"Choose the color scheme for the interface"_s,
        u"Launch at Login"_s,
        u"Automatically start Vellumry when you log in"_s,
        u"KEYBOARD SHORTCUTS"_s,
        u"Quick Search"_s,
        u"Open the command palette from anywhere"_s,
        u"Click to change shortcut"_s,
        u"Restart the app after changing shortcut"_s,
        u"STORAGE"_s,
        u"Data Location"_s,
        u"Watching for changes"_s,
        u"Sync Across Devices"_s,
        u"To sync your snippets across devices, click \"Change\" and select a cloud drive folder "
        "(Dropbox, iCloud Drive, Google Drive, etc.). Your data will be automatically "
        "transferred."_s};
    QStringList shown = texts();
    QStringList wanted = expected;
    shown.sort();
    wanted.sort();
    EXPECT_EQ(shown, wanted);
    QStringList buttons;
    for (const Button* button : view().findChildren<Button*>()) {
        if (button->isVisible() && !button->text().isEmpty())
            buttons.append(button->text());
    }
    EXPECT_EQ(buttons, (QStringList{u"Light"_s, u"Dark"_s, u"System"_s, u"Reveal in Finder"_s,
                                    u"Change..."_s, u"Reset to Defaults"_s, u"Done"_s}));
}

// Appearance

TEST_F(SettingsViewTest, OneButtonForEachAppearance)
{
    open();
    QStringList symbols;
    for (const AppearanceModeButton* button : view().appearanceButtons())
        symbols.append(rawValue(button->mode()) + u' ' + button->symbol());
    EXPECT_EQ(symbols, (QStringList{u"light sun.max.fill"_s, u"dark moon.fill"_s,
                                    u"system circle.lefthalf.filled"_s}));
    for (qsizetype i = 0; i < 3; ++i) {
        click(view().appearanceButtons()[i]);
        EXPECT_EQ(settings().appearanceMode(), view().appearanceButtons()[i]->mode());
        for (qsizetype j = 0; j < 3; ++j)
            EXPECT_EQ(view().appearanceButtons()[j]->isSelected(), i == j);
    }
    settings().setAppearanceMode(AppearanceMode::dark);
    EXPECT_TRUE(view().appearanceButtons()[1]->isSelected());
    click(view().appearanceButtons()[1]);
    EXPECT_TRUE(view().appearanceButtons()[1]->isSelected()) << "a second click takes nothing back";
}

TEST_F(SettingsViewTest, ArrowKeysChooseTheAppearance)
{
    open();
    view().appearanceButtons()[2]->setFocus(Qt::TabFocusReason);
    key(Qt::Key_Left);
    EXPECT_EQ(settings().appearanceMode(), AppearanceMode::dark);
    EXPECT_TRUE(view().appearanceButtons()[1]->isRingShown());
    key(Qt::Key_Left);
    EXPECT_EQ(settings().appearanceMode(), AppearanceMode::light);
    key(Qt::Key_Right);
    EXPECT_EQ(settings().appearanceMode(), AppearanceMode::dark);
}

TEST_F(SettingsViewTest, TheSettingsThemselvesTakeOnTheLook)
{
    // As the program does.
    QObject::connect(&settings(), &SettingsService::colorSchemeChanged, &theme,
                     [this] { theme.setScheme(settings().colorScheme()); });
    open();
    const auto ground = [this] { return window->grab().toImage().pixelColor(3, 3); };
    EXPECT_EQ(ground(), colorTokens(ColorScheme::light).sheet);
    click(view().appearanceButtons()[1]);
    EXPECT_EQ(ground(), colorTokens(ColorScheme::dark).sheet);
    click(view().appearanceButtons()[2]);
    EXPECT_EQ(ground(), colorTokens(ColorScheme::light).sheet);
    appearance.setColorScheme(ColorScheme::dark);
    EXPECT_EQ(ground(), colorTokens(ColorScheme::dark).sheet);
    click(view().appearanceButtons()[0]);
    EXPECT_EQ(ground(), colorTokens(ColorScheme::light).sheet);
}

// Launch at login

TEST_F(SettingsViewTest, TheSwitchIsThatOfTheService)
{
    open();
    ASSERT_TRUE(settings().launchAtLogin()) << "at the first start";
    EXPECT_TRUE(view().launchSwitch()->isChecked());
    EXPECT_FALSE(view().launchNotice()->isVisible());
    click(view().launchSwitch());
    EXPECT_FALSE(settings().launchAtLogin());
    EXPECT_FALSE(loginItem.enabled);
    view().launchSwitch()->setFocus(Qt::TabFocusReason);
    key(Qt::Key_Space);
    EXPECT_TRUE(settings().launchAtLogin());
    settings().setLaunchAtLogin(false);
    EXPECT_FALSE(view().launchSwitch()->isChecked());
}

TEST_F(SettingsViewTest, ARefusedSwitchFallsBack)
{
    open();
    loginItem.isRefusing = true;
    click(view().launchSwitch());
    EXPECT_FALSE(view().launchSwitch()->isChecked());
    nextTurn();
    EXPECT_TRUE(view().launchSwitch()->isChecked());
}

TEST_F(SettingsViewTest, WithoutALaunchAtLoginTheSwitchIsDisabled)
{
    hasLoginItem = false;
    open();
    EXPECT_FALSE(view().launchSwitch()->isEnabled());
    EXPECT_FALSE(view().launchSwitch()->isChecked());
    EXPECT_TRUE(view().launchNotice()->isVisible());
    EXPECT_TRUE(shows(u"Requires macOS 13.0 or later"_s));
    click(view().launchSwitch());
    EXPECT_FALSE(settings().launchAtLogin());
}

// The recorder

TEST_F(SettingsViewTest, TheHotKeyIsShownAsCaps)
{
    open();
    EXPECT_EQ(caps(), (QStringList{u"Alt"_s, u"T"_s}));
    settings().setQuickSearchHotkey({u"space"_s, ModifierFlags::control | ModifierFlags::shift |
                                                     ModifierFlags::option |
                                                     ModifierFlags::command});
    EXPECT_EQ(caps(), (QStringList{u"Ctrl"_s, u"Alt"_s, u"Shift"_s, u"Super"_s, u"␣"_s}));
}

TEST_F(SettingsViewTest, TheDesktopsWordsForTheKeysAreShownWhereItDecides)
{
    registry.backend->decide({hotkey::DesktopShortcut::State::granted, "Press Super+V"});
    open();
    EXPECT_EQ(caps(), QStringList{u"Press Super+V"_s});
    EXPECT_FALSE(view().desktopNote()->isVisible());
    EXPECT_EQ(view().recorderButton()->accessibleName(), u"Quick Search, Press Super+V"_s);

    registry.backend->decide({hotkey::DesktopShortcut::State::granted, "Alt+B"});
    EXPECT_EQ(caps(), QStringList{u"Alt+B"_s});
    startRecording();
    press(Qt::Key_Alt, Qt::AltModifier);
    EXPECT_EQ(caps(), QStringList{u"!Alt"_s});
}

TEST_F(SettingsViewTest, WhatTheDesktopHasNotMadeOfTheHotKeyIsSaid)
{
    using State = hotkey::DesktopShortcut::State;
    open();
    EXPECT_FALSE(view().desktopNote()->isVisible()) << "the window system takes what it is told";
    registry.backend->decide({State::asked, ""});
    EXPECT_FALSE(view().desktopNote()->isVisible());

    registry.backend->decide({State::unavailable, ""});
    EXPECT_TRUE(shows(u"This desktop gives programs no shortcuts. Let a key in its keyboard "
                      u"settings run \"vellumry --toggle-palette\", or call ActivateAction of "
                      u"org.freedesktop.Application with \"toggle-palette\" over D-Bus."_s));
    EXPECT_EQ(caps(), (QStringList{u"Alt"_s, u"T"_s}));

    registry.backend->decide({State::refused, ""});
    EXPECT_TRUE(shows(u"The desktop has not allowed this shortcut. Choose another one here, or let "
                      u"a key in the desktop's keyboard settings run \"vellumry "
                      u"--toggle-palette\"."_s));

    registry.backend->decide({State::granted, ""});
    EXPECT_TRUE(shows(u"The desktop has no key for this shortcut yet. Choose one in its keyboard "
                      u"settings."_s));

    registry.backend->decide({State::granted, "Alt+T"});
    EXPECT_FALSE(view().desktopNote()->isVisible());
}

TEST_F(SettingsViewTest, AClickStartsTheRecordingAndAnotherEndsIt)
{
    open();
    startRecording();
    EXPECT_TRUE(view().isRecordingHotkey());
    EXPECT_EQ(caps(), QStringList());
    EXPECT_TRUE(shows(u"Press shortcut..."_s));
    EXPECT_EQ(view().recorderHelp()->text(), u"Press Esc to cancel"_s);
    EXPECT_FALSE(isLive());
    press(Qt::Key_Control);
    click(view().recorderButton());
    EXPECT_FALSE(view().isRecordingHotkey());
    EXPECT_EQ(view().currentRecordingModifiers(), ModifierFlags{});
    EXPECT_EQ(caps(), (QStringList{u"Alt"_s, u"T"_s}));
    EXPECT_FALSE(shows(u"Press shortcut..."_s));
    EXPECT_EQ(view().recorderHelp()->text(), u"Click to change shortcut"_s);
    EXPECT_TRUE(isLive()) << "although the settings are still open";
    EXPECT_EQ(hotkey(), u"⌥T"_s);
}

TEST_F(SettingsViewTest, ModifiersAreShownWhileTheyAreHeld)
{
    open();
    startRecording();
    press(Qt::Key_Control);
    EXPECT_EQ(caps(), QStringList{u"!Ctrl"_s});
    press(Qt::Key_Shift, Qt::ControlModifier);
    EXPECT_EQ(caps(), (QStringList{u"!Ctrl"_s, u"!Shift"_s}));
    EXPECT_EQ(view().currentRecordingModifiers(), ModifierFlags::command | ModifierFlags::shift);
    release(Qt::Key_Control, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(caps(), QStringList{u"!Shift"_s});
    release(Qt::Key_Shift, Qt::ShiftModifier);
    EXPECT_EQ(caps(), QStringList());
    EXPECT_TRUE(view().isRecordingHotkey());
}

TEST_F(SettingsViewTest, OnlyACombinationIsRecorded)
{
    open();
    startRecording();
    key(Qt::Key_A);
    key(Qt::Key_A, Qt::ShiftModifier);
    key(Qt::Key_F5);
    key(Qt::Key_Tab);
    key(Qt::Key_Return);
    key(Qt::Key_Space);
    EXPECT_TRUE(view().isRecordingHotkey());
    EXPECT_EQ(hotkey(), u"⌥T"_s);
    key(Qt::Key_A, Qt::AltModifier);
    EXPECT_FALSE(view().isRecordingHotkey());
    EXPECT_EQ(hotkey(), u"⌥A"_s);
    EXPECT_EQ(caps(), (QStringList{u"Alt"_s, u"A"_s}));
    EXPECT_EQ(warning(), QString());
}

TEST_F(SettingsViewTest, EscapeCancelsAndResumesTheHotKey)
{
    open();
    EXPECT_FALSE(isLive());
    startRecording();
    press(Qt::Key_Alt);
    key(Qt::Key_Escape);
    EXPECT_FALSE(view().isRecordingHotkey());
    EXPECT_EQ(view().currentRecordingModifiers(), ModifierFlags{});
    EXPECT_EQ(caps(), (QStringList{u"Alt"_s, u"T"_s}));
    EXPECT_TRUE(isLive());
    EXPECT_TRUE(window->isVisible());
    startRecording();
    EXPECT_FALSE(isLive()) << "each recording pauses anew";
}

TEST_F(SettingsViewTest, ANewHotKeyIsPausedAgainUntilTheSettingsGo)
{
    open();
    startRecording();
    key(Qt::Key_K, Qt::MetaModifier);
    EXPECT_EQ(announced, QStringList{u"⌃K"_s});
    EXPECT_TRUE(isLive()) << "the change has put it on the system";
    nextTurn();
    EXPECT_FALSE(isLive());
    window->close();
    EXPECT_TRUE(isLive());
    EXPECT_EQ(hotkeys.currentKey(), u"k"_s);
}

TEST_F(SettingsViewTest, ThePauseAfterARecordingDoesNotOutliveTheSettings)
{
    open();
    startRecording();
    key(Qt::Key_K, Qt::AltModifier);
    window->close();
    nextTurn();
    EXPECT_TRUE(isLive());
}

TEST_F(SettingsViewTest, TheSameHotKeyCanBeRecordedAgain)
{
    open();
    startRecording();
    key(Qt::Key_T, Qt::AltModifier);
    EXPECT_EQ(warning(), QString()) << "our own is off the system";
    EXPECT_EQ(hotkey(), u"⌥T"_s);
}

TEST_F(SettingsViewTest, FunctionKeysAreRecordedWithAModifier)
{
    open();
    startRecording();
    key(Qt::Key_F5, Qt::ControlModifier);
    EXPECT_EQ(hotkey(), u"⌘F5"_s);
    EXPECT_EQ(caps(), (QStringList{u"Ctrl"_s, u"F5"_s}));
}

TEST_F(SettingsViewTest, TabCanBePartOfAHotKey)
{
    open();
    startRecording();
    key(Qt::Key_Tab, Qt::AltModifier);
    EXPECT_EQ(hotkey(), u"⌥TAB"_s);
    EXPECT_EQ(caps(), (QStringList{u"Alt"_s, u"⇥"_s}));
}

TEST_F(SettingsViewTest, CommandsAreNotRunByARecording)
{
    open();
    auto* command = new QAction(window.get());
    command->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_J));
    window->addAction(command);
    const QSignalSpy runs(command, &QAction::triggered);
    key(Qt::Key_J, Qt::ControlModifier);
    EXPECT_EQ(runs.count(), 1);
    startRecording();
    key(Qt::Key_J, Qt::ControlModifier);
    EXPECT_EQ(runs.count(), 1);
    EXPECT_EQ(hotkey(), u"⌘J"_s);
}

TEST_F(SettingsViewTest, AHeldReturnDoesNotStartTheNextRecording)
{
    open();
    view().recorderButton()->setFocus(Qt::TabFocusReason);
    key(Qt::Key_Return);
    ASSERT_TRUE(view().isRecordingHotkey());
    press(Qt::Key_Return, Qt::AltModifier);
    EXPECT_EQ(hotkey(), u"⌥RETURN"_s);
    QKeyEvent again(QEvent::KeyPress, Qt::Key_Return, Qt::AltModifier, u"\r"_s, true);
    QApplication::sendEvent(QApplication::focusWidget(), &again);
    EXPECT_FALSE(view().isRecordingHotkey());
}

TEST_F(SettingsViewTest, WhoWorksWithTheKeyboardGoesOnFromTheButton)
{
    open();
    view().recorderButton()->setFocus(Qt::TabFocusReason);
    key(Qt::Key_Space);
    ASSERT_TRUE(view().isRecordingHotkey());
    EXPECT_FALSE(view().recorderButton()->hasFocus());
    key(Qt::Key_Escape);
    EXPECT_TRUE(view().recorderButton()->isRingShown());
    startRecording();
    key(Qt::Key_Escape);
    EXPECT_TRUE(view().recorderButton()->hasFocus());
}

TEST_F(SettingsViewTest, AfterAClickNoFocusIsShown)
{
    open();
    startRecording();
    key(Qt::Key_Escape);
    EXPECT_FALSE(view().recorderButton()->isRingShown());
}

TEST_F(SettingsViewTest, ModifiersThatAreLetGoElsewhereAreForgotten)
{
    open();
    startRecording();
    press(Qt::Key_Alt);
    EXPECT_EQ(caps(), QStringList{u"!Alt"_s});
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    EXPECT_EQ(caps(), QStringList());
    EXPECT_TRUE(view().isRecordingHotkey());
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    key(Qt::Key_K, Qt::AltModifier);
    EXPECT_EQ(hotkey(), u"⌥K"_s) << "and the recording goes on";
}

/// The settings in a sheet, whose ground takes the keys at a click.
class SettingsSheetTest : public SettingsViewTest {
protected:
    SettingsSheetTest()
    {
        main.resize(900, 800);
        main.show();
        main.activateWindow();
        view();
        sheets.present(ownView.release(), {.onCancel = [this] { ++closed; }});
        QApplication::processEvents();
    }
    ~SettingsSheetTest() override { delete shownView; }

    static void keyOfTheFocus(Qt::Key which, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(QApplication::focusWidget(), which, modifiers);
    }

    ReducedMotion reducedMotion;
    QWidget main;
    SheetHost sheets{theme, &main};
    int closed = 0;
};

TEST_F(SettingsSheetTest, AClickElsewhereCancelsTheRecording)
{
    ASSERT_TRUE(QTest::qWaitForWindowActive(&main));
    const QList<QWidget*> places{sheets.presented(), view().recorderHelp(),
                                 view().appearanceButtons()[1]};
    for (QWidget* place : places) {
        startRecording();
        ASSERT_TRUE(view().isRecordingHotkey());
        keyOfTheFocus(Qt::Key_Control);
        click(place);
        EXPECT_FALSE(view().isRecordingHotkey());
        EXPECT_EQ(view().currentRecordingModifiers(), ModifierFlags{});
        EXPECT_EQ(view().recorderHelp()->text(), u"Click to change shortcut"_s);
        EXPECT_TRUE(isLive());
    }
    EXPECT_EQ(settings().appearanceMode(), AppearanceMode::dark) << "and the click counts";
    EXPECT_EQ(closed, 0);
}

TEST_F(SettingsSheetTest, AClickOnTheButtonEndsTheRecordingAndStartsNoOther)
{
    ASSERT_TRUE(QTest::qWaitForWindowActive(&main));
    startRecording();
    ASSERT_TRUE(view().isRecordingHotkey());
    click(view().recorderButton());
    EXPECT_FALSE(view().isRecordingHotkey());
    EXPECT_TRUE(isLive());

    startRecording();
    QWidget* const button = view().recorderButton();
    QTest::mousePress(button, Qt::LeftButton, {}, button->rect().center());
    QTest::mouseMove(button, {-50, -50});
    QTest::mouseRelease(button, Qt::LeftButton, {}, {-50, -50});
    ASSERT_TRUE(view().isRecordingHotkey()) << "that was no click";
    keyOfTheFocus(Qt::Key_K, Qt::AltModifier);
    EXPECT_EQ(hotkey(), u"⌥K"_s);
    EXPECT_EQ(closed, 0);
}

// The checks

TEST_F(SettingsViewTest, ASystemShortcutIsRefused)
{
    open();
    startRecording();
    key(Qt::Key_3, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_FALSE(view().isRecordingHotkey());
    EXPECT_EQ(warning(), u"Conflicts with system shortcut: Screenshot"_s);
    EXPECT_TRUE(shows(warning()));
    EXPECT_EQ(hotkey(), u"⌥T"_s);
    EXPECT_EQ(caps(), (QStringList{u"Alt"_s, u"T"_s}));
    EXPECT_TRUE(announced.isEmpty());
    nextTurn();
    EXPECT_FALSE(isLive()) << "until the settings go";
    window->close();
    EXPECT_TRUE(isLive());
}

TEST_F(SettingsViewTest, TheChecksComeInTheirOrder)
{
    open();
    // Everything is taken by somebody.
    registry.backend->refusal = {hotkey::hotKeyTaken, std::nullopt};
    startRecording();
    key(Qt::Key_N, Qt::ControlModifier);
    EXPECT_EQ(warning(), u"Conflicts with system shortcut: New"_s);
    startRecording();
    key(Qt::Key_I, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(warning(), u"Conflicts with app shortcut: Import"_s);
    EXPECT_TRUE(shows(warning()));
    startRecording();
    key(Qt::Key_T, Qt::AltModifier | Qt::ShiftModifier);
    EXPECT_EQ(warning(), u"This shortcut is already in use by another app"_s);
    EXPECT_TRUE(shows(warning()));
    registry.backend->refusal.reset();
    startRecording();
    key(Qt::Key_T, Qt::AltModifier | Qt::ShiftModifier);
    EXPECT_EQ(warning(), QString());
    EXPECT_FALSE(view().warningNote()->isVisible());
    EXPECT_EQ(hotkey(), u"⌥⇧T"_s);
}

TEST_F(SettingsViewTest, TheWarningStaysUntilTheNextSuccessOrAReset)
{
    open();
    const auto conflict = [this] {
        startRecording();
        key(Qt::Key_C, Qt::ControlModifier);
    };
    conflict();
    const QString text = u"Conflicts with system shortcut: Copy"_s;
    EXPECT_TRUE(shows(text));
    startRecording();
    EXPECT_TRUE(shows(text));
    key(Qt::Key_Escape);
    EXPECT_TRUE(shows(text));
    click(view().appearanceButtons()[0]);
    EXPECT_TRUE(shows(text));
    startRecording();
    key(Qt::Key_K, Qt::AltModifier);
    EXPECT_FALSE(shows(text));
    conflict();
    EXPECT_TRUE(shows(text));
    click(view().resetButton());
    EXPECT_FALSE(shows(text));
    EXPECT_EQ(view().conflictWarning(), std::nullopt);
}

// The pause of the hot key

TEST_F(SettingsViewTest, TheHotKeyIsPausedWhileTheSettingsAreOnTheScreen)
{
    view();
    EXPECT_TRUE(isLive()) << "before they are";
    open();
    EXPECT_FALSE(isLive());
    EXPECT_EQ(log.lines.count(u"HotkeyService: 热键已暂停"_s), 1);
    window->close();
    EXPECT_TRUE(isLive());
    EXPECT_EQ(log.lines.count(u"HotkeyService: 热键已恢复 ⌥T"_s), 1);
    window->show();
    EXPECT_FALSE(isLive()) << "each time";
}

TEST_F(SettingsViewTest, AMinimizedWindowIsStillThere)
{
    open();
    window->showMinimized();
    QApplication::processEvents();
    EXPECT_TRUE(window->isMinimized());
    EXPECT_FALSE(isLive());
}

TEST_F(SettingsViewTest, TheHotKeyComesBackHoweverTheSettingsEnd)
{
    const QList<std::pair<QString, std::function<void()>>> ends{
        {u"closed"_s, [this] { window->close(); }},
        {u"hidden"_s, [this] { window->hide(); }},
        {u"hidden within"_s, [this] { view().hide(); }},
        {u"taken out"_s, [this] { view().setParent(nullptr); }},
        {u"destroyed"_s, [this] { window.reset(); }},
        {u"destroyed within"_s, [this] { delete shownView.data(); }},
        {u"done"_s, [this] { click(view().doneButton()); }},
    };
    for (const auto& [name, end] : ends) {
        for (const bool duringRecording : {false, true}) {
            open();
            if (duringRecording)
                startRecording();
            ASSERT_FALSE(isLive()) << qPrintable(name);
            end();
            EXPECT_TRUE(isLive()) << qPrintable(name);
            if (shownView) {
                EXPECT_FALSE(shownView->isRecordingHotkey()) << qPrintable(name);
            }
            if (shownView && !shownView->parentWidget())
                delete shownView.data();
            window.reset();
        }
    }
}

// The footer

TEST_F(SettingsViewTest, ResetPutsEverythingBackButTheLaunch)
{
    open();
    startRecording();
    key(Qt::Key_K, Qt::ControlModifier | Qt::AltModifier);
    nextTurn();
    click(view().appearanceButtons()[1]);
    click(view().launchSwitch());
    announced.clear();
    click(view().resetButton());
    EXPECT_EQ(announced, QStringList{u"⌥T"_s}) << "at once";
    EXPECT_EQ(hotkey(), u"⌥T"_s);
    EXPECT_EQ(caps(), (QStringList{u"Alt"_s, u"T"_s}));
    EXPECT_EQ(settings().appearanceMode(), AppearanceMode::system);
    EXPECT_TRUE(view().appearanceButtons()[2]->isSelected());
    EXPECT_FALSE(settings().launchAtLogin());
    nextTurn();
    EXPECT_TRUE(isLive()) << "nobody pauses it again";
}

TEST_F(SettingsViewTest, ResetEndsARecording)
{
    open();
    startRecording();
    press(Qt::Key_Alt);
    click(view().resetButton());
    EXPECT_FALSE(view().isRecordingHotkey());
    EXPECT_EQ(view().currentRecordingModifiers(), ModifierFlags{});
    EXPECT_EQ(caps(), (QStringList{u"Alt"_s, u"T"_s}));
    EXPECT_TRUE(isLive());
}

TEST_F(SettingsViewTest, DoneClosesTheWindow)
{
    open();
    const QSignalSpy dismissals(&view(), &SettingsView::dismissed);
    startRecording();
    click(view().doneButton());
    EXPECT_EQ(dismissals.count(), 1);
    EXPECT_FALSE(window->isVisible());
    EXPECT_TRUE(isLive());
}

TEST_F(SettingsViewTest, DoneEndsASheetAndNotItsWindow)
{
    QWidget main;
    main.resize(1000, 700);
    SheetHost host(theme, &main);
    main.show();
    main.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&main));
    view();
    QPointer<SettingsView> sheet = ownView.release();
    QObject::connect(sheet, &SettingsView::dismissed, &host, [&] { host.dismiss(sheet); });
    host.present(sheet, {.onCancel = [&] { host.dismiss(sheet); }});
    EXPECT_FALSE(isLive());
    ASSERT_TRUE(QTest::qWaitFor([&] { return sheet->x() < main.width(); }));
    EXPECT_EQ(sheet->size(), QSize(500, 700 - 32));

    QTest::keyClick(main.windowHandle(), Qt::Key_Tab);
    startRecording();
    QTest::keyClick(main.windowHandle(), Qt::Key_Escape);
    EXPECT_FALSE(sheet->isRecordingHotkey());
    EXPECT_TRUE(host.isPresenting()) << "that Escape was the recorder's";
    click(sheet->doneButton());
    EXPECT_FALSE(host.isPresenting());
    EXPECT_TRUE(main.isVisible());
    EXPECT_TRUE(isLive());
}

// Storage

TEST_F(SettingsViewTest, TheLocationIsShownForPeople)
{
    open();
    EXPECT_EQ(view().storageSection().locationTile()->symbol(), u"folder.fill"_s);
    EXPECT_FALSE(view().storageSection().locationTile()->color());
    QStringList names;
    for (const QWidget* each : view().storageSection().findChildren<QWidget*>())
        names.append(each->accessibleName());
    EXPECT_TRUE(names.contains(u"~/Documents/Vellumry"_s));
    EXPECT_TRUE(view().storageSection().syncHint()->isVisible());
}

TEST_F(SettingsViewTest, TheToolTipHasTheWholePathAsItStands)
{
    open();
    for (const QString& folder : {u"/data/R&D"_s, u"/data/<b>R&amp;D"_s}) {
        world.setFolder(folder);
        Q_EMIT world.notifications.storageLocationDidChange(folder);
        QStringList tips;
        for (const QWidget* each : view().storageSection().findChildren<QWidget*>())
            tips.append(shownToolTip(*each));
        EXPECT_TRUE(tips.contains(folder)) << qPrintable(tips.join(u'\n'));
    }
}

TEST_F(SettingsViewTest, AFolderInACloudDriveHasItsLook)
{
    struct Drive {
        QString program;
        QString folder;
        CloudDriveType type;
        QString color;
        QString symbol;
    };
    const QList<Drive> table{
        {u"dropbox"_s, u"Dropbox"_s, CloudDriveType::dropbox, u"#0061ff"_s, u"shippingbox.fill"_s},
        {u"insync"_s, u"GoogleDrive"_s, CloudDriveType::googleDrive, u"#4285f4"_s,
         u"externaldrive.fill"_s},
        {u"onedrive"_s, u"OneDrive"_s, CloudDriveType::oneDrive, u"#0078d4"_s, u"cloud.fill"_s},
        {u"pcloud"_s, u"pCloudDrive"_s, CloudDriveType::pCloud, u"#00aeef"_s, u"cloud.fill"_s}};
    open();
    for (const Drive& drive : table) {
        programs.append(drive.program);
        const QString folder = home + u'/' + drive.folder;
        files.makeFolder(folder);
        files.makeFolder(folder + u"/Apps/Vellumry"_s);
        world.setFolder(folder + u"/Apps/Vellumry"_s);
        Q_EMIT world.notifications.storageLocationDidChange(world.folder);
        const SettingsTile& tile = *view().storageSection().locationTile();
        EXPECT_EQ(view().storageSection().currentCloudDrive()->type, drive.type);
        EXPECT_EQ(tile.symbol(), drive.symbol);
        ASSERT_TRUE(tile.color());
        EXPECT_EQ(tile.color()->name(), drive.color);
        EXPECT_EQ(tile.accessibleName(), rawValue(drive.type));
        EXPECT_FALSE(view().storageSection().syncHint()->isVisible());
    }
}

TEST_F(SettingsViewTest, ADriveIsFoundByTheTextOfThePathAlone)
{
    programs.append(u"dropbox"_s);
    files.makeFolder(home + u"/Dropbox"_s);
    files.makeFolder(home + u"/Dropbox Old"_s);
    world.setFolder(home + u"/Dropbox Old"_s);
    open();
    EXPECT_EQ(view().storageSection().locationTile()->symbol(), u"shippingbox.fill"_s)
        << "which it is not in";
    EXPECT_FALSE(view().storageSection().syncHint()->isVisible());
}

TEST_F(SettingsViewTest, WhetherTheFolderIsWatchedIsShown)
{
    open();
    EXPECT_FALSE(view().storageSection().watching()->isVisible());
    world.service().startFileWatching();
    EXPECT_TRUE(view().storageSection().watching()->isVisible());
    EXPECT_TRUE(shows(u"Watching for changes"_s));
    world.service().stopFileWatching();
    EXPECT_FALSE(shows(u"Watching for changes"_s));
}

TEST_F(SettingsViewTest, RevealShowsTheFolder)
{
    open();
    click(view().storageSection().revealButton());
    EXPECT_EQ(fileViewer.folders, QStringList{world.folder});
    NoteView* const problem = view().storageSection().problemNote();
    EXPECT_FALSE(problem->isVisible());
    fileViewer.fail(u"no file manager answers"_s);
    EXPECT_TRUE(problem->isVisible());
    EXPECT_EQ(problem->text(), u"The folder cannot be shown: no file manager answers"_s);
    EXPECT_TRUE(shows(problem->text()));
    click(view().storageSection().revealButton());
    EXPECT_FALSE(problem->isVisible()) << "until this one fails as well";
}

TEST_F(SettingsViewTest, ChangeAsksForItsSheet)
{
    open();
    const QSignalSpy requests(&view(), &SettingsView::changeLocationRequested);
    click(view().storageSection().changeButton());
    EXPECT_EQ(requests.count(), 1);
}

TEST_F(SettingsViewTest, ConflictsAreLookedForWhenTheSectionAppears)
{
    files.replace(world.folder + u"/Work.json"_s, "{}");
    files.replace(world.folder + u"/Work (conflicted copy 2024-01-31).json"_s, "{}");
    files.replace(world.folder + u"/Work (Ann's conflicted copy 2024-01-30).json"_s, "{}");
    view();
    EXPECT_TRUE(world.service().detectedConflicts().isEmpty());
    open();
    const qsizetype found = conflicts.detectConflicts(world.folder).size();
    ASSERT_GT(found, 0);
    EXPECT_EQ(world.service().detectedConflicts().size(), found);
    EXPECT_TRUE(view().storageSection().conflictWarning()->isVisible());
    EXPECT_TRUE(shows(u"Sync Conflict Detected"_s));
    EXPECT_TRUE(shows(u"%1 conflict file(s) found"_s.arg(found)));

    QList<ConflictFile> asked;
    QObject::connect(&view(), &SettingsView::resolveConflictsRequested, &view(),
                     [&](const QList<ConflictFile>& list) { asked = list; });
    click(view().storageSection().resolveButton());
    EXPECT_EQ(asked, world.service().detectedConflicts());

    world.service().setDetectedConflicts(asked.first(1));
    EXPECT_TRUE(shows(u"1 conflict file(s) found"_s));
    world.service().setDetectedConflicts({});
    EXPECT_FALSE(view().storageSection().conflictWarning()->isVisible());
    EXPECT_FALSE(shows(u"Sync Conflict Detected"_s));
    window->hide();
    window->show();
    EXPECT_TRUE(shows(u"Sync Conflict Detected"_s)) << "since the files are still there";
}

TEST_F(SettingsViewTest, AConflictIsWarnedOfUntilItIsResolved)
{
    const QString copy = world.folder + u"/Work (conflicted copy 2024-01-31).json"_s;
    files.replace(world.folder + u"/Work.json"_s, "{}");
    files.replace(copy, "{}");
    open();
    const ReducedMotion reducedMotion;
    SheetHost host(theme, &view());
    const QWidget* const warning = view().storageSection().conflictWarning();
    QPointer<ConflictResolutionSheet> sheet;
    QObject::connect(
        &view(), &SettingsView::resolveConflictsRequested, &host,
        [&](const QList<ConflictFile>& found) {
            sheet = new ConflictResolutionSheet(
                {.theme = theme,
                 .scheduler = world.scheduler,
                 .conflicts = found,
                 .onResolve =
                     [this](ConflictMergeStrategy strategy) {
                         ConflictResolution(conflicts, world.service()).resolve(strategy);
                     },
                 .fileViewer = fileViewer,
                 .onDismiss = [&] { host.dismiss(sheet); }});
            host.present(sheet, {});
        });

    click(view().storageSection().resolveButton());
    ASSERT_TRUE(sheet);
    click(&sheet->ignoreButton());
    EXPECT_FALSE(host.isPresenting());
    EXPECT_TRUE(warning->isVisible());
    EXPECT_TRUE(files.exists(copy));

    // A copy that cannot be removed: nobody is told, and the next time it is there again.
    files.onOperation = [&](const QString& operation, const QString& path) {
        if (operation == u"remove"_s && path == copy)
            throw MemoryFileSystem::error(operation, path, EACCES);
    };
    const auto resolve = [&] {
        click(view().storageSection().resolveButton());
        click(&sheet->resolveButton());
        EXPECT_FALSE(warning->isVisible());
        world.scheduler.advance(std::chrono::milliseconds(500));
        EXPECT_FALSE(host.isPresenting());
        window->hide();
        window->show();
    };
    resolve();
    EXPECT_TRUE(warning->isVisible());
    files.onOperation = nullptr;
    resolve();
    EXPECT_FALSE(warning->isVisible());
    EXPECT_FALSE(files.exists(copy));
}

// For everybody

QAccessibleInterface& accessOf(QWidget* widget)
{
    return *QAccessible::queryAccessibleInterface(widget);
}

TEST_F(SettingsViewTest, ControlsTellWhatTheyAre)
{
    open();
    const auto name = [](QWidget* widget) { return accessOf(widget).text(QAccessible::Name); };
    AppearanceModeButton* const dark = view().appearanceButtons()[1];
    EXPECT_EQ(accessOf(dark).role(), QAccessible::RadioButton);
    EXPECT_EQ(name(dark), u"Dark"_s);
    EXPECT_FALSE(accessOf(dark).state().checked);
    click(dark);
    EXPECT_TRUE(accessOf(dark).state().checked);

    EXPECT_EQ(accessOf(view().launchSwitch()).role(), QAccessible::CheckBox);
    EXPECT_EQ(name(view().launchSwitch()), u"Launch at Login"_s);
    EXPECT_TRUE(accessOf(view().launchSwitch()).state().checked);

    QWidget* const recorder = view().recorderButton();
    EXPECT_EQ(accessOf(recorder).role(), QAccessible::Button);
    EXPECT_EQ(name(recorder), u"Quick Search, Alt+T"_s);
    EXPECT_EQ(accessOf(recorder).text(QAccessible::Description), u"Click to change shortcut"_s);
    startRecording();
    press(Qt::Key_Control);
    EXPECT_EQ(name(recorder), u"Press shortcut... Ctrl"_s);
    EXPECT_EQ(name(QApplication::focusWidget()), u"Press shortcut... Ctrl"_s);
    key(Qt::Key_Space, Qt::AltModifier);
    EXPECT_EQ(name(recorder), u"Quick Search, Alt+Space"_s);

    for (const Button* button : view().findChildren<Button*>())
        EXPECT_FALSE(name(const_cast<Button*>(button)).isEmpty());
}

TEST_F(SettingsViewTest, TabGoesThroughTheControlsAndShowsWhereItIs)
{
    files.replace(world.folder + u"/Work.json"_s, "{}");
    files.replace(world.folder + u"/Work (conflicted copy 2024-01-31).json"_s, "{}");
    open();
    view().doneButton()->setFocus(Qt::TabFocusReason);
    StorageSettingsSection& storage = view().storageSection();
    QList<Button*> order{view().appearanceButtons()[2], view().launchSwitch(),
                         view().recorderButton(),       storage.revealButton(),
                         storage.changeButton(),        storage.resolveButton(),
                         view().resetButton(),          view().doneButton()};
    ASSERT_TRUE(storage.resolveButton()->isVisible());
    for (const Button* button : order) {
        key(Qt::Key_Tab);
        EXPECT_TRUE(button->isRingShown()) << qPrintable(button->accessibleName() + button->text());
    }
    for (const Button* button : {order[6], order[5]}) {
        key(Qt::Key_Backtab, Qt::ShiftModifier);
        EXPECT_TRUE(button->isRingShown());
    }
}

TEST_F(SettingsViewTest, ALowWindowScrollsToTheControlWithTheFocus)
{
    open();
    window->resize(500, 320);
    QApplication::processEvents();
    EXPECT_EQ(view().height(), 320);
    Button* const reveal = view().storageSection().revealButton();
    const auto isInSight = [&](QWidget* widget) {
        return !widget->visibleRegion().isEmpty() &&
               widget->visibleRegion().boundingRect().size() == widget->size();
    };
    EXPECT_TRUE(isInSight(view().doneButton()));
    EXPECT_FALSE(isInSight(reveal));
    view().recorderButton()->setFocus(Qt::TabFocusReason);
    key(Qt::Key_Tab);
    EXPECT_TRUE(reveal->hasFocus());
    EXPECT_TRUE(isInSight(reveal));
    EXPECT_TRUE(isInSight(view().doneButton()));
}

} // namespace
} // namespace vellumry::test
