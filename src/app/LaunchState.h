#pragma once

#include <QObject>
#include <QString>

#include <functional>

namespace vellumry {

class NotificationCenter;

/// What lies over the main window's contents: the first-launch sheet and the loading overlay. Main
/// thread only.
class LaunchState : public QObject {
    Q_OBJECT

public:
    /// `notifications` outlives the state.
    LaunchState(NotificationCenter& notifications, std::function<bool()> needsFirstLaunchSetup,
                QObject* parent = nullptr);

    [[nodiscard]] bool showFirstLaunchView() const { return isFirstLaunchShown; }
    [[nodiscard]] bool showLoadingOverlay() const { return isOverlayShown; }
    [[nodiscard]] const QString& loadingText() const { return overlayText; }

    /// The main window's contents are on the screen. The first time, the first-launch sheet is
    /// wanted if the setup is still to be done.
    void mainContentsDidAppear();
    /// The first-launch sheet has gone.
    void dismissFirstLaunchView();

Q_SIGNALS:
    void showFirstLaunchViewChanged();
    void showLoadingOverlayChanged();
    void loadingTextChanged();

private:
    void setFirstLaunchShown(bool isShown);
    void setOverlayShown(bool isShown);

    std::function<bool()> needsFirstLaunchSetup;
    bool haveContentsAppeared = false;
    bool isFirstLaunchShown = false;
    bool isOverlayShown = false;
    QString overlayText = QStringLiteral("Loading...");
};

} // namespace vellumry
