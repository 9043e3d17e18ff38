#include "library/LocationChange.h"

#include "core/Log.h"
#include "storage/DataMigrationHelper.h"

#include <QStringBuilder>

#include <exception>
#include <utility>

namespace vellumry {

namespace {

using namespace std::chrono_literals;

/// Every error of the storage says what it has to say for people here.
QString descriptionOf(const std::exception& failure)
{
    return QString::fromUtf8(failure.what());
}

bool belongsToALibrary(const QString& name)
{
    return name.endsWith(QLatin1StringView(".json")) || name == QLatin1StringView(".backups") ||
           name == QLatin1StringView("backups");
}

/// Whether `path` is the folder or lies in it, by whatever names and links.
bool isWithin(const QString& path, const QString& folder, FileSystem& files)
{
    // The system goes up from where the path really leads, which its text may not tell.
    QString above = path;
    while (!files.isSame(above, folder)) {
        const QString next = above % u"/..";
        if (!files.exists(next) || files.isSame(next, above))
            return false;
        above = next;
    }
    return true;
}

} // namespace

LocationChange::LocationChange(Dependencies dependencies) : with(std::move(dependencies)) {}

LocationChange::~LocationChange()
{
    // Nobody else would take the overlay down.
    if (migrating)
        Q_EMIT with.notifications.hideLoadingOverlay();
}

void LocationChange::applyChanges(const std::optional<QString>& selectedPath)
{
    if (!selectedPath || migrating)
        return;
    const QString from = with.locations.currentLocation();
    const QString& to = *selectedPath;
    // One folder under two names would be copied onto itself and then cleared.
    if (to == from || with.files.isSame(to, from))
        return setErrorMessage(QStringLiteral("New location is the same as current location"));

    setMigrating(true);
    setErrorMessage(std::nullopt);
    setPhase(Phase::copying);
    Q_EMIT with.notifications.showLoadingOverlay(QStringLiteral("Migrating your data..."));

    with.background.run(carryOver({.from = from, .to = to}));
}

/// The part in the background, which ends with the way back to this object if it still is there.
std::function<void()> LocationChange::carryOver(Move move)
{
    return [this, owner = QPointer<QObject>(this), move = std::move(move),
            &locations = with.locations, &files = with.files, &background = with.background,
            &clock = with.clock]() mutable {
        const auto report = [&](double value) {
            background.onMain(owner, [this, value] { setProgress(value); });
        };
        try {
            report(0.1);
            if (!files.exists(move.to))
                files.createFolders(move.to);
            report(0.2);
            locations.validateDirectory(move.to);
            report(0.3);
            report(0.4);
            // A folder that does not tell what it holds is not one without a library.
            move.isListed = files.exists(move.from);
            move.isCopied = move.isListed && files.list(move.from).contains(
                                                 StorageLocationManager::metadataFileName);
            if (move.isCopied) {
                report(0.5);
                DataMigrationHelper::copyMultiFileData(move.from, move.to, report, files);
                report(1.0);
                log(u"DataMigrationHelper",
                    QString(u"数据迁移成功 - " % move.from % u" -> " % move.to));
            } else {
                DataMigrationHelper::createEmptyData(move.to, files, clock);
                report(1.0);
            }
            background.onMain(owner, [this, move] { switchLocation(move); });
        } catch (const std::exception& failure) {
            background.onMain(owner, [this, message = descriptionOf(failure)] { fail(message); });
        }
    };
}

void LocationChange::switchLocation(const Move& move)
{
    setPhase(Phase::switching);
    Q_EMIT with.notifications.showLoadingOverlay(QStringLiteral("Reloading app data..."));
    try {
        with.locations.setCustomLocation(move.to);
    } catch (const std::exception& failure) {
        return fail(descriptionOf(failure));
    }

    setPhase(Phase::cleaning);
    try {
        if (move.isListed && with.locations.isLocationSaved())
            cleanupOldLocation(move);
    } catch (const FileError&) {
        // What is left in the old folder does no harm.
    }

    setPhase(Phase::reloading);
    with.clearCacheAndReload();
    with.scheduler.after(500ms, this, [this] {
        with.refreshData();
        Q_EMIT with.notifications.hideLoadingOverlay();
        setMigrating(false);
        setPhase(Phase::idle);
        Q_EMIT finished();
    });
}

void LocationChange::cleanupOldLocation(const Move& move)
{
    for (const QString& name : with.files.list(move.from)) {
        if (belongsToALibrary(name) && mayBeRemoved(move, name))
            with.files.removeAll(move.from % u'/' % name);
    }
    if (with.files.list(move.from).isEmpty())
        with.files.removeEmptyFolder(move.from);
    log(u"ChangeLocationSheet", QString(u"已清理旧位置 - " % move.from));
}

/// Whether nothing of the library goes with this entry of the old folder.
bool LocationChange::mayBeRemoved(const Move& move, const QString& name) const
{
    const QString entry = move.from % u'/' % name;
    const QString counterpart = move.to % u'/' % name;
    if (with.files.isSame(entry, counterpart) || isWithin(move.to, entry, with.files))
        return false;
    const bool isFile = name.endsWith(QLatin1StringView(".json"));
    return !move.isCopied || !isFile || with.files.exists(counterpart);
}

void LocationChange::fail(const QString& message)
{
    Q_EMIT with.notifications.hideLoadingOverlay();
    setMigrating(false);
    setPhase(Phase::idle);
    setErrorMessage(message);
}

void LocationChange::setPhase(Phase value)
{
    if (std::exchange(currentPhase, value) != value)
        Q_EMIT phaseChanged();
}

void LocationChange::setMigrating(bool value)
{
    if (std::exchange(migrating, value) != value)
        Q_EMIT isMigratingChanged();
}

void LocationChange::setProgress(double value)
{
    if (std::exchange(progress, value) != value)
        Q_EMIT migrationProgressChanged();
}

void LocationChange::setErrorMessage(const std::optional<QString>& value)
{
    if (std::exchange(error, value) != value)
        Q_EMIT errorMessageChanged();
}

} // namespace vellumry
