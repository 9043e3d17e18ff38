#include "platform/linux/PosixFileSystem.h"
#include "storage/StorageWorld.h"
#include "support/LogCapture.h"

#include <QRandomGenerator>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <functional>
#include <random>
#include <set>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace vellumry::test {

namespace {

using namespace std::chrono_literals;

/// Counts the calls that change something and lets one of them do otherwise.
class InterruptedFileCalls final : public FileCalls {
public:
    /// What happens at the call with this number, the first being 0; none happens at -1.
    int interruptedCall = -1;
    enum class Interruption { fails, killsBefore, killsAfter, killsHalfWay } interruption{};
    int failure = EIO;
    int count = 0;

    int open(const char* path, int flags, mode_t mode) override
    {
        if ((flags & (O_CREAT | O_DIRECTORY)) == 0)
            return FileCalls::open(path, flags, mode);
        return interruptible([&] { return FileCalls::open(path, flags, mode); });
    }
    ssize_t write(int descriptor, const void* buffer, size_t size) override
    {
        if (count == interruptedCall && interruption == Interruption::killsHalfWay)
            (void)FileCalls::write(descriptor, buffer, size / 2);
        return interruptible([&] { return FileCalls::write(descriptor, buffer, size); });
    }
    int fchmod(int descriptor, mode_t mode) override
    {
        return interruptible([&] { return FileCalls::fchmod(descriptor, mode); });
    }
    int fdatasync(int descriptor) override
    {
        return interruptible([&] { return FileCalls::fdatasync(descriptor); });
    }
    int fsync(int descriptor) override
    {
        return interruptible([&] { return FileCalls::fsync(descriptor); });
    }
    int rename(const char* from, const char* to) override
    {
        return interruptible([&] { return FileCalls::rename(from, to); });
    }
    int unlink(const char* path) override
    {
        return interruptible([&] { return FileCalls::unlink(path); });
    }

private:
    template <typename Call>
    auto interruptible(Call call) -> decltype(call())
    {
        const bool isIt = count++ == interruptedCall;
        if (isIt && interruption == Interruption::fails) {
            errno = failure;
            return -1;
        }
        if (isIt && interruption != Interruption::killsAfter)
            ::raise(SIGKILL);
        const auto result = call();
        if (isIt)
            ::raise(SIGKILL);
        return result;
    }
};

/// A library of three collections, each with snippets that all tell its generation; odd generations
/// have a fourth.
VellumryData generation(int number)
{
    QList<SyncCollection> collections;
    QList<Snippet> snippets;
    for (int c = 0; c < (number % 2 == 0 ? 3 : 4); ++c) {
        const QString name = QStringLiteral("Collection%1").arg(c);
        collections.append(makeCollection(QStringLiteral("id%1").arg(c), name));
        for (int i = 0; i < 20; ++i) {
            SnippetFields fields =
                makeSnippet(QStringLiteral("%1-%2").arg(c).arg(i), name,
                            QStringLiteral("generation %1 ").arg(number).repeated(40))
                    .fields();
            fields.usageCount = number;
            snippets.append(Snippet(fields));
        }
    }
    return makeLibrary(collections, snippets);
}

class CrashTest : public testing::Test {
protected:
    void SetUp() override { saveGeneration(0); }

    void saveGeneration(int number) { world.service().saveFullData(generation(number), false); }

    /// Runs the work in a process of its own until it ends or is killed, by itself or after the
    /// delay. Returns whether it was killed.
    bool isKilled(const std::function<void()>& work, std::optional<std::chrono::microseconds> delay)
    {
        int ready[2];
        EXPECT_EQ(::pipe2(ready, O_CLOEXEC), 0);
        // A process of its own would not begin with the random numbers of the last one.
        QRandomGenerator::global()->discard(100'000);
        const pid_t child = ::fork();
        if (child == 0) {
            (void)!::write(ready[1], "x", 1);
            try {
                work();
            } catch (const StorageError&) {
                ::_exit(1);
            }
            ::_exit(0);
        }
        char answer = 0;
        EXPECT_EQ(::read(ready[0], &answer, 1), 1);
        ::close(ready[0]);
        ::close(ready[1]);
        if (delay) {
            std::this_thread::sleep_for(*delay); // the moment of the crash, not a waiting
            ::kill(child, SIGKILL);
        }
        int status = 0;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == 0);
        return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
    }

    /// The file of a collection holds one generation whole. Returns which one.
    int expectWholeFile(const QString& name)
    {
        const CollectionFileData file =
            decodeCollectionFile(files.read(world.path(name)).bytes.view().toByteArray());
        EXPECT_TRUE(name.startsWith(file.collection.name.toLower())) << name.toStdString();
        const int number = static_cast<int>(file.snippets.value(0).usageCount());
        QList<Snippet> expected = generation(number).data.snippets;
        expected.removeIf(
            [&](const Snippet& each) { return each.collection() != file.collection.name; });
        EXPECT_TRUE(file.snippets == expected) << name.toStdString();
        return number;
    }

    /// Every file holds one generation whole, those of two that follow one another at most, and
    /// the folder loads. Returns the older one.
    int expectWholeFolder()
    {
        std::set<int> generations;
        for (const QString& name : files.list(world.folder)) {
            if (name.startsWith(QStringLiteral(".vellumry-")) && !name.endsWith(u".json"))
                continue; // an unfinished file, which no load looks at
            if (name == u"_metadata.json") {
                const FileContents contents = files.read(world.path(name));
                EXPECT_GE(
                    decodeMetadataFile(contents.bytes.view().toByteArray()).collectionOrder.size(),
                    3);
                continue;
            }
            EXPECT_EQ(name.size(), QStringLiteral("collection0.json").size()) << name.toStdString();
            generations.insert(expectWholeFile(name));
        }
        EXPECT_FALSE(generations.empty());
        EXPECT_LE(*generations.rbegin() - *generations.begin(), 1);
        world.restart();
        const auto loaded = world.service().loadFullData();
        EXPECT_TRUE(loaded);
        EXPECT_GE(loaded ? loaded->data.collections.size() : 0, 3);
        return *generations.begin();
    }

    LogCapture log;
    QTemporaryDir directory;
    InterruptedFileCalls calls;
    PosixFileSystem files{calls};
    StorageWorld world{files, directory.filePath(QStringLiteral("library"))};
};

TEST_F(CrashTest, killedAtAnyMomentItLeavesWholeFiles)
{
    constexpr int kills = 500;
    constexpr int longestDelay = 20'000; // microseconds; a few saves
    std::mt19937 random(20'261'121);
    std::uniform_int_distribution delays(0, longestDelay);
    int number = 0;
    std::set<int> reached;
    for (int turn = 0; turn < kills && !HasFailure(); ++turn) {
        const bool killed = isKilled(
            [&] {
                for (int next = number + 1;; ++next)
                    saveGeneration(next);
            },
            std::chrono::microseconds(delays(random)));
        ASSERT_TRUE(killed);
        number = expectWholeFolder();
        reached.insert(number);
    }
    EXPECT_GT(reached.size(), 10U) << "the kills came while it was saving";
}

TEST_F(CrashTest, twoProgramsThatSaveAtOnceLeaveWholeFiles)
{
    constexpr int saves = 100;
    const pid_t other = ::fork();
    if (other == 0) {
        QRandomGenerator::global()->discard(100'000); // as a program of its own
        try {
            for (int i = 0; i < saves; ++i) {
                saveGeneration(1'000 + i);
                if (!world.service().loadFullData())
                    ::_exit(1);
            }
        } catch (const StorageError&) {
            ::_exit(2);
        }
        ::_exit(0);
    }
    for (int i = 0; i < saves && !HasFailure(); ++i) {
        EXPECT_NO_THROW(saveGeneration(i + 1));
        EXPECT_TRUE(world.service().loadFullData());
        for (const QString& name : files.list(world.folder)) {
            if (!name.endsWith(u".json") || name == u"_metadata.json")
                continue;
            try {
                expectWholeFile(name);
            } catch (const FileError&) {
                // The other one has removed it meanwhile.
            }
        }
    }
    int status = 0;
    ASSERT_EQ(::waitpid(other, &status, 0), other);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;

    // A file that one has removed after the other had listed it is written beside its name. Later
    // saves remove such a second file of a collection, one each.
    for (int i = 0; i < 10; ++i)
        saveGeneration(4'998);
    EXPECT_EQ(expectWholeFolder(), 4'998);
}

TEST_F(CrashTest, killedAtEachStepItLeavesWholeFiles)
{
    using Interruption = InterruptedFileCalls::Interruption;
    int steps = 0;
    int number = 0;
    for (const auto interruption :
         {Interruption::killsBefore, Interruption::killsHalfWay, Interruption::killsAfter}) {
        bool killed = true;
        for (int step = 0; killed; ++step) {
            killed = isKilled(
                [&] {
                    calls.count = 0;
                    calls.interruptedCall = step;
                    calls.interruption = interruption;
                    saveGeneration(number + 1);
                    saveGeneration(number + 2);
                },
                std::nullopt);
            number = expectWholeFolder();
            ASSERT_FALSE(HasFailure()) << "step " << step;
            steps += killed ? 1 : 0;
        }
    }
    EXPECT_GT(steps, 3 * 30);
}

TEST_F(CrashTest, aFailureAtAnyStepLeavesWholeFilesAndTheNextSaveCompletes)
{
    int number = 0;
    for (const int failure : {EIO, ENOSPC, EDQUOT, EROFS}) {
        calls.failure = failure;
        bool hasFailed = true;
        for (int step = 0; hasFailed; ++step) {
            const VellumryData before = *world.service().currentData();
            calls.count = 0;
            calls.interruptedCall = step;
            calls.interruption = InterruptedFileCalls::Interruption::fails;
            try {
                saveGeneration(number + 1);
            } catch (const StorageError&) {
                EXPECT_EQ(world.service().currentData()->data.snippets, before.data.snippets);
            }
            hasFailed = calls.count > step;
            calls.interruptedCall = -1;
            for (const QString& name : files.list(world.folder))
                EXPECT_FALSE(name.startsWith(u'.')) << name.toStdString() << " is left";
            expectWholeFolder();
            ++number;
            saveGeneration(number);
            EXPECT_EQ(expectWholeFolder(), number);
            ASSERT_FALSE(HasFailure()) << "step " << step;
        }
    }
}

} // namespace

} // namespace vellumry::test
