#include "library/FirstLaunch.h"

#include "core/Log.h"
#include "library/SnippetListViewModel.h"
#include "storage/CollectionFileStorageService.h"
#include "storage/StorageLocationError.h"

#include <QPointer>
#include <QStringBuilder>

#include <utility>

namespace vellumry {

namespace {

void log(const QString& message)
{
    vellumry::log(u"VellumryApp", message);
}

/// From any thread. Whether the folder is the library's now.
bool setLocation(StorageLocationManager& locations, const QString& location)
{
    try {
        locations.setCustomLocation(location);
        return true;
    } catch (const StorageLocationError& failure) {
        log(u"设置存储位置失败 - " % failure.description());
        return false;
    }
}

} // namespace

FirstLaunchChoice FirstLaunchChoice::startFresh(const QString& location)
{
    return {Kind::startFresh, location};
}

FirstLaunchChoice FirstLaunchChoice::useExisting(const QString& location)
{
    return {Kind::useExisting, location};
}

FirstLaunch::FirstLaunch(const Dependencies& dependencies) : with(dependencies) {}

void FirstLaunch::handleFirstLaunchChoice(const FirstLaunchChoice& choice)
{
    Q_EMIT with.notifications.showLoadingOverlay(choice.kind == FirstLaunchChoice::Kind::startFresh
                                                     ? QStringLiteral("Setting up your data...")
                                                     : QStringLiteral("Loading your data..."));
    with.background.run([this, owner = QPointer<QObject>(this), choice, &locations = with.locations,
                         &background = with.background] {
        const bool isSet = setLocation(locations, choice.location);
        if (isSet)
            locations.markFirstLaunchComplete();
        background.onMain(owner, [this, kind = choice.kind, isSet] {
            finish(kind, isSet);
            Q_EMIT with.notifications.hideLoadingOverlay();
        });
    });
}

void FirstLaunch::finish(FirstLaunchChoice::Kind kind, bool isSet)
{
    if (kind == FirstLaunchChoice::Kind::startFresh) {
        if (!isSet)
            with.locations.markFirstLaunchComplete();
        createDefaultData();
    } else if (isSet) {
        // Warms the cache. Not in the background: the store belongs to this thread.
        with.storage.loadFullData();
        with.list.refreshData();
    }
}

void FirstLaunch::createDefaultData()
{
    with.storage.seedDefaultSnippets();
    with.list.refreshData();
    log(QStringLiteral("默认数据已创建"));
}

} // namespace vellumry
