#include "hotkey/X11HotKeyBackend.h"
#include "hotkey/XServer.h"
#include "settings/HotkeyConflictChecker.h"

#include <gtest/gtest.h>

#include <memory>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;
using hotkey::ModifierFlags;
using hotkey::X11HotKeyBackend;

/// The check against a real X server.
class LiveConflictTest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_FALSE(server.displayName().empty()) << server.failure();
        ours = connect();
        theirs = connect();
        ASSERT_TRUE(ours && theirs);
    }

    [[nodiscard]] std::unique_ptr<X11HotKeyBackend> connect() const
    {
        return X11HotKeyBackend::connect([](const std::function<void()>&) {}, server.displayName());
    }

    hotkey::XServer server;
    std::unique_ptr<X11HotKeyBackend> ours;
    std::unique_ptr<X11HotKeyBackend> theirs;
};

TEST_F(LiveConflictTest, ACombinationIsTakenAsLongAsAnotherProgramHoldsIt)
{
    const HotkeyConflictChecker checker(*ours);
    EXPECT_EQ(checker.check(u"t"_s, ModifierFlags::option), std::nullopt);
    // That we tried it hinders nobody.
    const auto held = theirs->registerHotKey(17, hotkey::carbonOptionBit, {1, 1});
    ASSERT_TRUE(held.reference);
    EXPECT_EQ(checker.check(u"t"_s, ModifierFlags::option),
              u"This shortcut is already in use by another app"_s);
    EXPECT_EQ(checker.check(u"t"_s, ModifierFlags::option | ModifierFlags::shift), std::nullopt);
    EXPECT_EQ(checker.check(u"f5"_s, ModifierFlags::option), std::nullopt);
    theirs->unregisterHotKey(*held.reference);
    EXPECT_EQ(checker.check(u"t"_s, ModifierFlags::option), std::nullopt);
}

TEST_F(LiveConflictTest, OurOwnHotKeyIsTakenToo)
{
    ASSERT_TRUE(ours->registerHotKey(17, hotkey::carbonOptionBit, {1, 1}).reference);
    EXPECT_NE(HotkeyConflictChecker(*ours).check(u"t"_s, ModifierFlags::option), std::nullopt);
}

} // namespace
} // namespace vellumry
