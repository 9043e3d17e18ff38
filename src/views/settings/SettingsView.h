#pragma once

#include "core/Scheduler.h"
#include "hotkey/ModifierFlags.h"
#include "models/ConflictFile.h"
#include "views/common/Theme.h"

#include <QList>
#include <QString>
#include <QWidget>

#include <optional>

class QBoxLayout;
class QScrollArea;
class QVBoxLayout;

namespace vellumry {

class AppearanceModeButton;
class Button;
class CloudDriveDetectionService;
class CollectionFileStorageService;
class ConflictDetectionService;
class FileViewer;
class HotkeyConflictChecker;
class HotkeyRecorderButton;
class HotkeyServiceProtocol;
class Label;
class NoteView;
class NotificationCenter;
class OverlayScrollBar;
class SettingsGroup;
class SettingsService;
class SettingsSwitch;
class StorageLocationManager;
class StorageSettingsSection;

/// The settings: the contents of a window of their own, or of a sheet. When they come on the screen
/// the global hot key goes off the system, and when they go, or a recording ends or is cancelled,
/// it comes back. Whoever shows them ends them upon dismissed(). Main thread only.
class SettingsView final : public QWidget {
    Q_OBJECT

public:
    /// What the view works with; all outlive it.
    struct Dependencies {
        SettingsService& settings;
        HotkeyServiceProtocol& hotkeyService;
        const HotkeyConflictChecker& conflictChecker;
        const StorageLocationManager& locationManager;
        const CloudDriveDetectionService& cloudDriveService;
        const ConflictDetectionService& conflictDetection;
        CollectionFileStorageService& collectionStorage;
        NotificationCenter& notifications;
        FileViewer& fileViewer;
        Scheduler& scheduler;
        const Theme& theme;
    };

    explicit SettingsView(const Dependencies& dependencies, QWidget* parent = nullptr);
    ~SettingsView() override;

    // State

    [[nodiscard]] bool isRecordingHotkey() const { return recording; }
    [[nodiscard]] const std::optional<QString>& conflictWarning() const { return warning; }
    [[nodiscard]] hotkey::ModifierFlags currentRecordingModifiers() const { return modifiers; }

    // Parts

    [[nodiscard]] const QList<AppearanceModeButton*>& appearanceButtons() const { return modes; }
    [[nodiscard]] SettingsSwitch* launchSwitch() const { return launch; }
    /// Tells that the system launches nothing at login.
    [[nodiscard]] QWidget* launchNotice() const { return launchProblem; }
    [[nodiscard]] HotkeyRecorderButton* recorderButton() const { return recorder; }
    [[nodiscard]] Label* recorderHelp() const { return help; }
    [[nodiscard]] NoteView* warningNote() const { return note; }
    /// Tells what the desktop has not made of the hot key; hidden where there is nothing to tell.
    [[nodiscard]] NoteView* desktopNote() const { return desktop; }
    [[nodiscard]] StorageSettingsSection& storageSection() const { return *storage; }
    [[nodiscard]] Button* resetButton() const { return reset; }
    [[nodiscard]] Button* doneButton() const { return done; }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// The person is done.
    void dismissed();
    void changeLocationRequested();
    void resolveConflictsRequested(const QList<vellumry::ConflictFile>& conflicts);

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void addGeneralSection(QVBoxLayout& column, QWidget* body);
    void addKeyboardSection(QVBoxLayout& column, QWidget* body);
    [[nodiscard]] NoteView* addNote(SettingsGroup& group, QWidget*& row) const;
    void addStorageSection(QVBoxLayout& column, QWidget* body);
    void addHeading(QVBoxLayout& column, const QString& text, QWidget* body) const;
    void buildFooter();
    void observe();
    void applyTheme();

    void onAppear();
    void onDisappear();

    void toggleRecording();
    void handleHotkeyRecorded(const QString& key, hotkey::ModifierFlags pressed);
    void cancelRecording();
    void stopRecording();
    void showRecorder();
    void setConflictWarning(const std::optional<QString>& text);
    void showAppearanceMode();
    void resetToDefaults();
    void dismissSettings();

    Dependencies services;
    bool appeared = false; ///< whether the view is on the screen
    bool recording = false;
    std::optional<QString> warning;
    hotkey::ModifierFlags modifiers;

    QScrollArea* area;
    OverlayScrollBar* scrollBar;
    QWidget* footer;
    QList<AppearanceModeButton*> modes;
    SettingsSwitch* launch = nullptr;
    QWidget* launchProblem = nullptr;
    QBoxLayout* recorderRow = nullptr;
    HotkeyRecorderButton* recorder = nullptr;
    Label* help = nullptr;
    QWidget* noteRow = nullptr;
    NoteView* note = nullptr;
    QWidget* desktopRow = nullptr;
    NoteView* desktop = nullptr;
    StorageSettingsSection* storage = nullptr;
    Button* reset = nullptr;
    Button* done = nullptr;
};

} // namespace vellumry
