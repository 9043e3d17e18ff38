#pragma once

#include "models/ConflictFile.h"
#include "models/DetectedCloudDrive.h"
#include "views/settings/SettingsParts.h"

#include <QList>

#include <optional>

namespace vellumry {

class Button;
class CloudDriveDetectionService;
class CollectionFileStorageService;
class ConflictDetectionService;
class FileViewer;
class NoteView;
class NotificationCenter;
class StorageLocationManager;

/// Where the library lives, whether it is watched, and what a cloud drive has left there. Looks for
/// conflict copies each time it appears. Main thread only.
class StorageSettingsSection final : public SettingsGroup {
    Q_OBJECT

public:
    /// What the section works with; all outlive it.
    struct Dependencies {
        const StorageLocationManager& locationManager;
        const CloudDriveDetectionService& cloudDriveService;
        const ConflictDetectionService& conflictDetection;
        CollectionFileStorageService& collectionStorage;
        NotificationCenter& notifications;
        FileViewer& fileViewer;
        const Theme& theme;
    };

    StorageSettingsSection(const Dependencies& dependencies, const QString& name,
                           QWidget* parent = nullptr);

    /// The first drive of this machine whose folder's path the path of the library begins with, by
    /// the text alone.
    [[nodiscard]] std::optional<DetectedCloudDrive> currentCloudDrive() const;

    [[nodiscard]] SettingsTile* locationTile() const { return tile; }
    [[nodiscard]] QWidget* watching() const { return watchingMark; }
    [[nodiscard]] QWidget* syncHint() const { return syncRow; }
    [[nodiscard]] QWidget* conflictWarning() const { return conflictRow; }
    /// Tells that the folder could not be shown.
    [[nodiscard]] NoteView* problemNote() const { return problem; }
    [[nodiscard]] Button* revealButton() const { return reveal; }
    [[nodiscard]] Button* changeButton() const { return change; }
    [[nodiscard]] Button* resolveButton() const { return resolve; }

Q_SIGNALS:
    /// The person wants to move the library.
    void changeLocationRequested();
    /// The person wants to deal with these copies.
    void resolveConflictsRequested(const QList<vellumry::ConflictFile>& conflicts);

protected:
    void showEvent(QShowEvent* event) override;

private:
    class PathLabel;

    void addLocation();
    void addProblem();
    void addSyncHint();
    void addConflictWarning();
    void revealFolder();
    void refresh();

    Dependencies services;
    SettingsTile* tile = nullptr;
    PathLabel* path = nullptr;
    QWidget* watchingMark = nullptr;
    QBoxLayout* actionsRow = nullptr;
    QWidget* syncRow = nullptr;
    QWidget* conflictRow = nullptr;
    NoteView* conflicts = nullptr;
    QWidget* problemRow = nullptr;
    NoteView* problem = nullptr;
    Button* reveal = nullptr;
    Button* change = nullptr;
    Button* resolve = nullptr;
};

} // namespace vellumry
