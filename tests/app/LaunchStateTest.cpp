#include "app/LaunchState.h"

#include "notifications/NotificationCenter.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

namespace vellumry::test {

namespace {

class LaunchStateTest : public testing::Test {
protected:
    NotificationCenter center;
    bool needsSetup = false;
    LaunchState state{center, [this] { return needsSetup; }};
};

TEST_F(LaunchStateTest, beginsWithNothingShown)
{
    EXPECT_FALSE(state.showFirstLaunchView());
    EXPECT_FALSE(state.showLoadingOverlay());
    EXPECT_EQ(state.loadingText(), QStringLiteral("Loading..."));
}

TEST_F(LaunchStateTest, theFirstLaunchSheetIsWantedOnceAtMost)
{
    needsSetup = true;
    const QSignalSpy changes(&state, &LaunchState::showFirstLaunchViewChanged);
    state.mainContentsDidAppear();
    EXPECT_TRUE(state.showFirstLaunchView());
    state.dismissFirstLaunchView();
    EXPECT_FALSE(state.showFirstLaunchView());
    state.mainContentsDidAppear();
    EXPECT_FALSE(state.showFirstLaunchView());
    EXPECT_EQ(changes.count(), 2);
}

TEST_F(LaunchStateTest, aSetupThatIsDoneWantsNoSheet)
{
    state.mainContentsDidAppear();
    EXPECT_FALSE(state.showFirstLaunchView());
}

TEST_F(LaunchStateTest, theOverlayFollowsTheAnnouncements)
{
    const QSignalSpy shown(&state, &LaunchState::showLoadingOverlayChanged);
    const QSignalSpy texts(&state, &LaunchState::loadingTextChanged);
    Q_EMIT center.showLoadingOverlay(QStringLiteral("Setting up your data..."));
    EXPECT_TRUE(state.showLoadingOverlay());
    EXPECT_EQ(state.loadingText(), QStringLiteral("Setting up your data..."));
    Q_EMIT center.hideLoadingOverlay();
    EXPECT_FALSE(state.showLoadingOverlay());
    Q_EMIT center.showLoadingOverlay(std::nullopt);
    EXPECT_TRUE(state.showLoadingOverlay());
    EXPECT_EQ(state.loadingText(), QStringLiteral("Setting up your data..."))
        << "without a text the last one stays";
    EXPECT_EQ(shown.count(), 3);
    EXPECT_EQ(texts.count(), 1);
}

} // namespace

} // namespace vellumry::test
