#pragma once

#include "core/BackgroundRunner.h"
#include "core/Date.h"
#include "core/Scheduler.h"
#include "notifications/NotificationCenter.h"
#include "platform/FileSystem.h"
#include "storage/StorageLocationManager.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace vellumry {

/// The move of the library to another folder, from the person's choice to the reloaded library:
/// the files are copied in the background, then the new location comes into force, the old folder
/// is cleared and the store reads the new one. Any failure before the new location is in force
/// ends the move: the old location stays, and what was copied until then stays at the target.
///
/// Nothing is removed from the old folder before the new location is in force, for good; and
/// nothing that the copied library lacks. A library in an older form is not carried over: its
/// folder gives an empty library at the new place and is cleared all the same.
///
/// Main thread only. When it is destroyed during the copying, that goes on to its end, and the
/// location stays as it is.
class LocationChange final : public QObject {
    Q_OBJECT

public:
    enum class Phase { idle, copying, switching, cleaning, reloading };
    Q_ENUM(Phase)

    /// The references outlive this object and the work that it gave to `background`.
    struct Dependencies {
        StorageLocationManager& locations;
        FileSystem& files;
        NotificationCenter& notifications;
        Scheduler& scheduler;
        BackgroundRunner& background;
        const Clock& clock;
        std::function<void()> clearCacheAndReload; ///< of the store
        std::function<void()> refreshData;         ///< of the list in the main window
    };

    explicit LocationChange(Dependencies dependencies);
    ~LocationChange() override;

    [[nodiscard]] Phase phase() const { return currentPhase; }
    /// Whether a move is under way.
    [[nodiscard]] bool isMigrating() const { return migrating; }
    /// From 0 to 1; stays where it was when a move ends.
    [[nodiscard]] double migrationProgress() const { return progress; }
    /// What went wrong, for the person.
    [[nodiscard]] const std::optional<QString>& errorMessage() const { return error; }

    /// Moves the library to the folder. Does nothing without a choice or while a move is under
    /// way.
    void applyChanges(const std::optional<QString>& selectedPath);

Q_SIGNALS:
    void phaseChanged();
    void isMigratingChanged();
    void migrationProgressChanged();
    void errorMessageChanged();
    /// The move is done: the sheet may close.
    void finished();

private:
    /// One move.
    struct Move {
        QString from;
        QString to;
        bool isListed = false; ///< whether there was an old folder to look into
        bool isCopied = false; ///< whether it held a library that was copied
    };

    [[nodiscard]] std::function<void()> carryOver(Move move);
    void switchLocation(const Move& move);
    void cleanupOldLocation(const Move& move);
    [[nodiscard]] bool mayBeRemoved(const Move& move, const QString& name) const;
    void fail(const QString& message);

    void setPhase(Phase value);
    void setMigrating(bool value);
    void setProgress(double value);
    void setErrorMessage(const std::optional<QString>& value);

    Dependencies with;
    Phase currentPhase = Phase::idle;
    bool migrating = false;
    double progress = 0;
    std::optional<QString> error;
};

} // namespace vellumry
