// The store of snapshots over a real directory.
#include "statistics_analyzer.h"
#include "support/files.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <future>
#include <limits>
#include <string>
#include <vector>

#ifndef _WIN32
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#endif

namespace {

namespace fs = std::filesystem;
using statistics::StatisticsAnalyzer;
using Lines = std::vector<std::string>;

const std::string kHead = "sep=\t\nCaption\tValue\n";

/// "folder/name" of each record. Positions are proved on the way.
Lines records(const StatisticsAnalyzer& store)
{
    Lines names;
    store.forEachSnapshot([&](const StatisticsAnalyzer::Snapshot& snapshot) {
        EXPECT_EQ(snapshot.index, names.size());
        names.push_back(snapshot.folder + "/" + snapshot.name);
    });
    return names;
}

class SnapshotStore : public testing::Test {
protected:
    test::TempDir dir;
};

TEST_F(SnapshotStore, aNewSnapshotIsNamedAfterFolderAndLocalTimeAndHoldsTheBytesAsTheyAre)
{
    const auto nameNow = [] {
        const std::time_t now = std::time(nullptr);
        char text[40];
        return std::string(text, std::strftime(text, sizeof(text), "100%% of it_%Y_%m_%d-%H_%M_%S.csv",
                                               std::localtime(&now)));
    };
    StatisticsAnalyzer store(dir("root"), "100% of it");
    const std::string before = nameNow();
    const statistics::CounterValue text = std::string("1\n2");
    store.saveSnapshot({{"count", 4294967295u}, {"rate", 0.12345f}, {"a\tb", text}, {"", std::string()}});
    const StatisticsAnalyzer::Snapshot& taken = store.snapshots[0];
    EXPECT_LE(before, taken.name);
    EXPECT_LE(taken.name, nameNow());
    EXPECT_EQ(dir.read("root/100% of it/" + taken.name),
              kHead + "count\t4294967295\nrate\t0.123\na\tb\t1\n2\n\t\n");
    const StatisticsAnalyzer next(dir("root"), "next");
    EXPECT_EQ(records(next), records(store));
    EXPECT_TRUE(taken.values[0].second.isUInt());
    EXPECT_TRUE(next.snapshots[0].values[0].second.isDecimal());
}

TEST(SnapshotStamp, followsTheTimeZoneAndFallsBackToSeconds)
{
    EXPECT_EQ(statistics::timeStamp(253433923200), "253433923200"); // the year 10001
    EXPECT_EQ(statistics::timeStamp(std::numeric_limits<std::time_t>::max()), "9223372036854775807");
#ifndef _WIN32
    const char* const zone = std::getenv("TZ");
    const std::string before = zone ? zone : "";
    setenv("TZ", "UTC", 1);
    EXPECT_EQ(statistics::timeStamp(1709993107), "2024_03_09-14_05_07");
    setenv("TZ", "Far-5:30", 1);
    EXPECT_EQ(statistics::timeStamp(1709993107), "2024_03_09-19_35_07");
    zone ? setenv("TZ", before.c_str(), 1) : unsetenv("TZ");
    tzset();
#endif
}

#ifndef _WIN32

TEST_F(SnapshotStore, findsTheFilesOfAllFoldersAsTheFileSystemDeliversThem)
{
    for (const char* file : {"root/not.csv", "root/one/a.csv", "root/one/b", "root/one/deeper/not.csv",
                             "root/two/a.csv", "linked/o.csv"})
        dir.write(file, kHead + "x\t1\n");
    dir.write("root/one/c.txt", "no snapshot");
    fs::create_directory_symlink(dir("linked"), dir("root/linked"));
    fs::create_symlink(dir("linked/o.csv"), dir("root/two/linked.csv"));
    fs::create_symlink(dir("nowhere"), dir("root/two/not.broken"));
    fs::create_symlink(dir("nowhere"), dir("root/not.broken"));
    mkfifo(dir("root/two/not.pipe").c_str(), 0600); // whoever opens it waits for ever
    Lines expected;
    const auto followed = fs::directory_options::follow_directory_symlink;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(dir("root"), followed)) {
        const fs::path name = fs::path(entry).lexically_relative(dir("root"));
        if (!entry.is_directory() && name.stem() != "not")
            expected.push_back(name.string());
    }
    const StatisticsAnalyzer store(dir("root"), "bench");
    ASSERT_EQ(records(store), expected);
    ASSERT_EQ(expected.size(), 6u);
    for (const StatisticsAnalyzer::Snapshot& snapshot : store.snapshots)
        EXPECT_EQ(snapshot.values.size(), snapshot.name == "c.txt" ? 0u : 1u) << snapshot.name;
    store.forEachSnapshot({}); // nothing to call is nothing to do
}

TEST_F(SnapshotStore, aRootThatCannotBeListedIsEmptyAndTakesSnapshotsStill)
{
    dir.write("file", "bytes");
    fs::create_directory_symlink(dir("nowhere"), dir("broken"));
    for (const char* root : {"missing/below", "file", "broken"}) {
        StatisticsAnalyzer store(dir(root), "bench");
        EXPECT_EQ(records(store), Lines{}) << root;
        store.saveSnapshot({{"a", 1}});
        EXPECT_EQ(store.snapshots[0].values[0].second, 1);
        EXPECT_EQ(dir.has(root + ("/bench/" + store.snapshots[0].name)), *root == 'm') << root;
    }
    EXPECT_EQ(dir.read("file"), "bytes");
}

TEST_F(SnapshotStore, staysWhereItWasMadeWhenTheHostChangesItsDirectory)
{
    const fs::path before = fs::current_path();
    dir.write("there/root/one/a.csv", kHead);
    dir.write("elsewhere/root/one/mine.csv", kHead);
    fs::current_path(dir("there"));
    StatisticsAnalyzer store("root", "bench");
    fs::current_path(dir("elsewhere"));
    store.saveSnapshot({});
    EXPECT_TRUE(dir.has("there/root/bench"));
    store.clearSnapshots();
    fs::current_path(before);
    EXPECT_EQ(store.root, "root");
    EXPECT_TRUE(fs::is_empty(dir("there/root")));
    EXPECT_TRUE(dir.has("elsewhere/root/one/mine.csv"));

    fs::create_directory(dir("gone"));
    fs::current_path(dir("gone"));
    fs::remove(dir("gone"));
    EXPECT_NO_THROW(StatisticsAnalyzer("root", "bench"));
    fs::current_path(before);
}

TEST_F(SnapshotStore, aFileThatStandsWhereAFolderWasStaysAndIsAnError)
{
    dir.write("root/one/a.csv", kHead);
    StatisticsAnalyzer store(dir("root"), "bench");
    fs::remove_all(dir("root/one"));
    dir.write("root/one", "mine");
    EXPECT_THROW(store.clearSnapshots(), fs::filesystem_error);
    EXPECT_EQ(dir.read("root/one"), "mine");
    EXPECT_EQ(store.snapshots.size(), 1u);
    fs::remove(dir("root/one"));
    store.clearSnapshots(); // what is gone already is no error
    EXPECT_TRUE(store.snapshots.empty());
}

TEST_F(SnapshotStore, processesThatTakeScanAndClearInOneRootNeverDisturbEachOther)
{
    std::atomic<bool> done{false};
    const auto work = [&](const std::string& folder) {
        while (!done) {
            StatisticsAnalyzer store(dir("root"), folder);
            for (int count = 0; count < 5; ++count) {
                store.saveSnapshot({{"a", 1}});
                EXPECT_EQ(store.snapshots.back().problem, "");
            }
            store.clearSnapshots();
        }
    };
    auto one = std::async(std::launch::async, work, "one");
    auto two = std::async(std::launch::async, work, "two");
    one.wait_for(std::chrono::milliseconds(300));
    done = true;
    EXPECT_NO_THROW(one.get());
    EXPECT_NO_THROW(two.get());
}

TEST_F(SnapshotStore, clearingDeletesTheFoldersOfTheRecordsWholeAndNothingElse)
{
    for (const char* file : {"root/one/a.csv", "root/one/b.csv", "root/one/deeper/still/c.csv",
                             "root/top.txt", "late/kept.csv", "outside/o.csv", "beside/b.csv"})
        dir.write(file, kHead);
    fs::create_directory_symlink(dir("outside"), dir("root/linked"));
    fs::create_directory_symlink(dir("outside"), dir("root/one/linked"));
    fs::create_directory_symlink("../../../beside", dir("root/one/deeper/linked"));
    fs::create_directory_symlink(dir("root"), dir("root/one/up"));
    StatisticsAnalyzer store(dir("root"), "bench");
    store.saveSnapshot({{"a", 1}});
    ASSERT_EQ(store.snapshots.size(), 4u);
    store.addToDiff(3);
    store.addToDiff(4);                        // there is none
    fs::rename(dir("late"), dir("root/late")); // a folder that no record tells of
    fs::remove_all(dir("root/bench"));         // a folder that has become a link meanwhile
    fs::create_directory_symlink(dir("beside"), dir("root/bench"));
    EXPECT_EQ(store.describeClearing(), "Deletes 3 folders with 6 files below " + dir("root"));

    store.clearSnapshots();
    fs::remove(dir("root/top.txt"));
    EXPECT_EQ(fs::remove_all(dir("root/late")), 2u);
    EXPECT_TRUE(fs::is_empty(dir("root"))); // nothing else was left
    for (const char* kept : {"outside/o.csv", "beside/b.csv"})
        EXPECT_TRUE(dir.has(kept)) << kept;
    EXPECT_EQ(store.snapshots.size() + store.diffTable.m_columns.size() + store.diffTable.m_rows.size(), 0u);
    dir.write("root/bench/late.csv", kHead);
    store.clearSnapshots(); // nothing known, nothing deleted
    EXPECT_TRUE(dir.has("root/bench/late.csv"));
    store.saveSnapshot({});
    EXPECT_EQ(store.snapshots[0].index, 0u);
    EXPECT_EQ(dir.read("root/bench/" + store.snapshots[0].name), kHead);
}

TEST_F(SnapshotStore, clearingDeletesNothingWhereAFolderIsMovedToMeanwhile)
{
    dir.write("elsewhere/kept.csv", kHead);
    dir.write("root/one/a.csv", kHead);
    for (int file = 0; file < 1000; ++file)
        dir.write("root/one/deeper/" + std::to_string(file), "");
    StatisticsAnalyzer store(dir("root"), "bench");
    const auto moved = std::async(std::launch::async, [&] {
        while (dir.has("root/one/deeper/500")) // it is being emptied by then
            continue;
        std::error_code emptiedAlready;
        fs::rename(dir("root/one/deeper"), dir("elsewhere/deeper"), emptiedAlready);
    });
    store.clearSnapshots();
    EXPECT_FALSE(dir.has("root/one"));
    EXPECT_TRUE(dir.has("elsewhere/kept.csv"));
}

/// A chain of directories, each in the one before, that no path reaches the end of.
void makeDeep(const std::string& top, int levels)
{
    int at = open(top.c_str(), O_RDONLY | O_DIRECTORY);
    for (int level = 0; level < levels; ++level) {
        ASSERT_EQ(mkdirat(at, "deeper", 0700), 0);
        const int below = openat(at, "deeper", O_RDONLY | O_DIRECTORY);
        close(at);
        at = below;
    }
    close(at);
}

TEST_F(SnapshotStore, clearingNeedsNoMoreFilesAndNoMoreStackHoweverDeepAFolderIs)
{
    dir.write("root/one/a.csv", kHead);
    makeDeep(dir("root/one"), 3000);
    StatisticsAnalyzer store(dir("root"), "bench");
    rlimit before{};
    getrlimit(RLIMIT_NOFILE, &before);
    const rlimit few{40, before.rlim_max};
    setrlimit(RLIMIT_NOFILE, &few);
    EXPECT_EQ(store.describeClearing().rfind("Deletes 1 folder with ", 0), 0u);
    EXPECT_NO_THROW(store.clearSnapshots());
    setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_TRUE(fs::is_empty(dir("root")));
}

#endif

} // namespace
