#include "app/LaunchState.h"

#include "notifications/NotificationCenter.h"

#include <utility>

namespace vellumry {

LaunchState::LaunchState(NotificationCenter& notifications, std::function<bool()> needsSetup,
                         QObject* parent)
    : QObject(parent), needsFirstLaunchSetup(std::move(needsSetup))
{
    connect(&notifications, &NotificationCenter::showLoadingOverlay, this,
            [this](const std::optional<QString>& text) {
                if (text && *text != overlayText) {
                    overlayText = *text;
                    Q_EMIT loadingTextChanged();
                }
                setOverlayShown(true);
            });
    connect(&notifications, &NotificationCenter::hideLoadingOverlay, this,
            [this] { setOverlayShown(false); });
}

void LaunchState::mainContentsDidAppear()
{
    if (!std::exchange(haveContentsAppeared, true) && needsFirstLaunchSetup())
        setFirstLaunchShown(true);
}

void LaunchState::dismissFirstLaunchView()
{
    setFirstLaunchShown(false);
}

void LaunchState::setFirstLaunchShown(bool isShown)
{
    if (std::exchange(isFirstLaunchShown, isShown) != isShown)
        Q_EMIT showFirstLaunchViewChanged();
}

void LaunchState::setOverlayShown(bool isShown)
{
    if (std::exchange(isOverlayShown, isShown) != isShown)
        Q_EMIT showLoadingOverlayChanged();
}

} // namespace vellumry
