#include "platform/QuitSignals.h"

#include "support/Eventually.h"

#include <gtest/gtest.h>

#include <csignal>
#include <sys/resource.h>

namespace vellumry {
namespace {

TEST(QuitSignals, EachSignalIsTold)
{
    int told = 0;
    const QuitSignals signals([&told] { ++told; });
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        const int before = told;
        std::raise(signal);
        EXPECT_TRUE(test::eventually([&] { return told == before + 1; })) << signal;
    }
}

TEST(QuitSignalsDeathTest, AreNotSwallowedWhereTheyCannotBeTold)
{
    const auto withoutDescriptors = [] {
        const rlimit none{0, 0};
        setrlimit(RLIMIT_NOFILE, &none);
        const QuitSignals signals([] {});
        std::raise(SIGTERM);
    };
    EXPECT_EXIT(withoutDescriptors(), testing::KilledBySignal(SIGTERM), "");
}

} // namespace
} // namespace vellumry
