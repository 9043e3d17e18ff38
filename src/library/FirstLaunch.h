#pragma once

#include "core/BackgroundRunner.h"
#include "notifications/NotificationCenter.h"
#include "storage/StorageLocationManager.h"

#include <QObject>
#include <QString>

namespace vellumry {

class CollectionFileStorageService;
class SnippetListViewModel;

/// What the person chose at the first launch, and the folder for it.
struct FirstLaunchChoice {
    enum class Kind { startFresh, useExisting };

    [[nodiscard]] static FirstLaunchChoice startFresh(const QString& location);
    [[nodiscard]] static FirstLaunchChoice useExisting(const QString& location);

    Kind kind = Kind::startFresh;
    QString location;
};

/// What follows on the choice of the first launch: the folder becomes the library's, and the
/// library is made or loaded. An overlay tells of the wait, and of nothing else: that a folder
/// cannot be used, the person is not told.
///
/// Main thread only. The folder is set in the background, as testing it may take its time; the
/// store and the list are touched on the main thread alone. The store hears of the new folder
/// there before anything else that follows, as it was told first.
class FirstLaunch final : public QObject {
    Q_OBJECT

public:
    /// The references outlive this object and the work that it gave to `background`.
    struct Dependencies {
        StorageLocationManager& locations;
        CollectionFileStorageService& storage;
        SnippetListViewModel& list;
        NotificationCenter& notifications;
        BackgroundRunner& background;
    };

    explicit FirstLaunch(const Dependencies& dependencies);

    /// A fresh start is made in any case, in the default folder if the chosen one cannot be used.
    /// Existing data that cannot be used leave the first launch to be done.
    void handleFirstLaunchChoice(const FirstLaunchChoice& choice);

private:
    void finish(FirstLaunchChoice::Kind kind, bool isSet);
    void createDefaultData();

    Dependencies with;
};

} // namespace vellumry
