#pragma once

#include "hotkey/FakeHotKeyBackend.h"
#include "hotkey/HotKeysController.h"
#include "settings/HotkeyConflictChecker.h"
#include "settings/HotkeyService.h"
#include "settings/SettingsService.h"
#include "storage/MemoryFileSystem.h"
#include "storage/StorageWorld.h"
#include "support/FakeAppearance.h"
#include "support/FakeFileViewer.h"
#include "support/FakeLoginItem.h"
#include "support/LogCapture.h"
#include "sync/CloudDriveDetectionService.h"
#include "sync/ConflictDetectionService.h"
#include "views/common/Button.h"
#include "views/common/Label.h"
#include "views/common/NoteView.h"
#include "views/settings/AppearanceModeButton.h"
#include "views/settings/HotkeyRecorderButton.h"
#include "views/settings/KeyCapView.h"
#include "views/settings/SettingsParts.h"
#include "views/settings/SettingsSwitch.h"
#include "views/settings/SettingsView.h"
#include "views/settings/StorageSettingsSection.h"
#include "views/window/SettingsWindow.h"

#include <QApplication>
#include <QPointer>
#include <QTest>
#include <QWindow>
#include <gtest/gtest.h>

#include <memory>
#include <utility>

namespace vellumry::test {

/// The registry of hot keys over a window system of plain values, for as long as it lives.
class HotKeyRegistry {
public:
    HotKeyRegistry()
    {
        auto fake = std::make_unique<hotkey::FakeHotKeyBackend>();
        backend = fake.get();
        hotkey::HotKeysController::setBackend(std::move(fake));
        hotkey::HotKeysController::hotKeys.clear();
    }
    ~HotKeyRegistry() { hotkey::HotKeysController::setBackend(nullptr); }
    HotKeyRegistry(const HotKeyRegistry&) = delete;
    HotKeyRegistry& operator=(const HotKeyRegistry&) = delete;

    hotkey::FakeHotKeyBackend* backend;
};

/// The settings in their window, over real services in memory and a program that registers the hot
/// key as the real one does, with time in the test's hands.
class SettingsFixture : public testing::Test {
public:
    SettingsFixture()
    {
        files.makeFolder(world.folder);
        QObject::connect(&world.notifications, &NotificationCenter::hotkeyDidChange, &hotkeys,
                         [this](const HotkeyConfig& config) {
                             announced.append(config.displayString());
                             registerHotkey(config);
                         });
    }

    void registerHotkey(const HotkeyConfig& config)
    {
        hotkeys.registerGlobalHotkey(config.key, config.modifiers, [this] { ++palettes; });
    }

    /// Builds what is not there yet: the services as at the start of the program, and the view.
    SettingsView& view()
    {
        if (!shownView) {
            settings();
            auto made = std::make_unique<SettingsView>(
                SettingsView::Dependencies{.settings = settings(),
                                           .hotkeyService = hotkeys,
                                           .conflictChecker = checker,
                                           .locationManager = world.locations,
                                           .cloudDriveService = drives,
                                           .conflictDetection = conflicts,
                                           .collectionStorage = world.service(),
                                           .notifications = world.notifications,
                                           .fileViewer = fileViewer,
                                           .scheduler = world.scheduler,
                                           .theme = theme});
            shownView = made.get();
            ownView = std::move(made);
        }
        return *shownView;
    }

    SettingsService& settings()
    {
        if (!service) {
            service = std::make_unique<SettingsService>(
                SettingsService::Dependencies{.preferences = world.preferences,
                                              .hotkeyService = hotkeys,
                                              .notifications = world.notifications,
                                              .appearance = appearance,
                                              .scheduler = world.scheduler,
                                              .loginItem = hasLoginItem ? &loginItem : nullptr});
            registerHotkey(service->quickSearchHotkey());
        }
        return *service;
    }

    /// Shows the settings in their window and makes it active.
    void open()
    {
        view();
        window = std::make_unique<SettingsWindow>(ownView.release());
        window->setAttribute(Qt::WA_DeleteOnClose, false);
        window->show();
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
        QApplication::processEvents();
    }

    // Keys and clicks, as the desktop sends them

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::simulateEvent(window->windowHandle(), true, key, modifiers, {}, false);
    }
    void release(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::simulateEvent(window->windowHandle(), false, key, modifiers, {}, false);
    }
    /// With the presses and releases of the modifiers around it.
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(window->windowHandle(), key, modifiers);
    }
    static void click(QWidget* widget)
    {
        QTest::mouseClick(widget, Qt::LeftButton, {}, widget->rect().center());
    }
    void nextTurn() { world.scheduler.advance(std::chrono::milliseconds(0)); }
    void startRecording() { click(view().recorderButton()); }

    // What is there to see

    /// The texts of all labels that are shown, in their order.
    [[nodiscard]] QStringList texts()
    {
        QStringList shown;
        for (const Label* label : view().findChildren<Label*>()) {
            if (label->isVisible() && !label->text().isEmpty())
                shown.append(label->text());
        }
        return shown;
    }
    [[nodiscard]] bool shows(const QString& text) { return texts().contains(text); }
    /// The caps of the recorder, "!" before those of a recording.
    [[nodiscard]] QStringList caps()
    {
        QStringList symbols;
        for (const KeyCapView* cap : view().recorderButton()->findChildren<KeyCapView*>()) {
            if (cap->isVisible())
                symbols.append((cap->isRecording() ? QStringLiteral("!") : QString()) +
                               cap->symbol());
        }
        return symbols;
    }
    [[nodiscard]] QString hotkey() { return settings().quickSearchHotkey().displayString(); }
    /// Whether the hot key is on the system.
    [[nodiscard]] bool isLive() const { return !registry.backend->held.empty(); }
    [[nodiscard]] QString warning() { return view().conflictWarning().value_or(QString()); }

    LogCapture log;
    HotKeyRegistry registry;
    const QString home = QStringLiteral("/home/tester");
    MemoryFileSystem files;
    StorageWorld world{files, home + QStringLiteral("/Documents/Vellumry")};
    FakeAppearance appearance;
    FakeLoginItem loginItem;
    bool hasLoginItem = true;
    FakeFileViewer fileViewer;
    Theme theme{ColorScheme::light, 1};
    HotkeyService hotkeys{[this] { return settings().quickSearchHotkey(); }};
    HotkeyConflictChecker checker{*registry.backend};
    QStringList programs;
    CloudDriveDetectionService drives{
        {.files = files,
         .homeFolder = home,
         .applicationsFolder = QStringLiteral("/Applications"),
         .isOnPath = [this](const QString& name) { return programs.contains(name); }}};
    ConflictDetectionService conflicts{{.locations = world.locations, .files = files}};
    QStringList announced; ///< hot keys
    int palettes = 0;
    std::unique_ptr<SettingsService> service;
    std::unique_ptr<SettingsView> ownView; ///< until it is in its window
    QPointer<SettingsView> shownView;
    std::unique_ptr<SettingsWindow> window;
};

} // namespace vellumry::test
