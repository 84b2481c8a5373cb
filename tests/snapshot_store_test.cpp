// Snapshots on disk: the bytes of one file, out and in, and the store over a real directory.
#include "statistics_analyzer.h"
#include "support/files.h"

#include <gtest/gtest.h>

#include <clocale>
#include <csignal>
#include <ctime>
#include <locale>
#include <string>
#include <utility>
#include <vector>

#ifndef _WIN32
#include <sys/resource.h>
#include <sys/stat.h>
#endif

namespace {

namespace fs = std::filesystem;
using statistics::SnapshotValues;
using statistics::StatisticsAnalyzer;
using Lines = std::vector<std::string>;

const std::string kHead = "sep=\t\nCaption\tValue\n";
const std::string kExample =
    kHead + "Frame/Time\t16.667\nFrame/Draws\t1250\nBalance\t-3\nRegion\tnorth\nIdle\t---\n";
const Lines kExampleRead{"Frame/Time=16.667", "Frame/Draws=1250.000", "Balance=-3.000", "Region=0.000",
                         "Idle=0.000"};

// "caption=number" of each entry, numbers with three decimals.
Lines readFile(const std::string& path)
{
    Lines entries;
    for (const auto& [caption, value] : StatisticsAnalyzer::readSnapshot(path)) {
        entries.push_back(caption + "=" + value.toString(nullptr));
    }
    return entries;
}

class SnapshotFile : public testing::Test {
protected:
    std::string written(const SnapshotValues& values)
    {
        store.writeSnapshot("bench/a.csv", values);
        return dir.read("root/bench/a.csv");
    }
    Lines read(const std::string& bytes)
    {
        dir.write("read.csv", bytes);
        return readFile(dir("read.csv"));
    }
    void expectExample()
    {
        const statistics::CounterValue north = std::string("north");
        EXPECT_EQ(written({{"Frame/Time", 16.667F},
                           {"Frame/Draws", 1250U},
                           {"Balance", -3},
                           {"Region", north},
                           {"Idle", {}}}),
                  kExample);
        EXPECT_EQ(read(kExample), kExampleRead);
    }

    test::TempDir dir;
    StatisticsAnalyzer store{dir("root"), "bench"};
};

TEST_F(SnapshotFile, holdsCaptionTabAndValuePerLineAsTheDocumentedExample)
{
    expectExample();
    EXPECT_EQ(written({}), kHead); // in place of the longer file
    const std::string documented = std::string(__FILE__) + "/../../docs/snapshot-example.csv";
    fs::copy(fs::path(documented).lexically_normal(), dir("example.csv"));
    EXPECT_EQ(dir.read("example.csv"), kExample);
}

TEST_F(SnapshotFile, readingGoesOnToTheFirstLineThatHoldsNoEntry)
{
    const std::pair<std::string, Lines> cases[] = {
        {"", {}},
        {"a\t1", {}},
        {"a\t1\nb\t2\n", {}},
        {"a foreign file\nof any kind\nc\t3\nis read", {"c=3.000"}},
        {"\n\n\n", {}},
        {kHead + "a\t1\nb\t2", {"a=1.000", "b=2.000"}}, // no line end at the end
        {kHead + "a\t1\r\nb\t2\r\n\r\nc\t3\r\n", {"a=1.000", "b=2.000"}},
        {kHead + "a\t1\n\nb\t2\n", {"a=1.000"}},
        {kHead + "a\t1\nno tab 2\nb\t2\n", {"a=1.000"}},
        {kHead + "a\t1\nwhite\t \t\v\f\r \nb\t2\n", {"a=1.000"}},
        {kHead + "a\t \t\v\f\r 7 8\na\t12 apples\n", {"a=7.000", "a=12.000"}},
        {kHead + "a\tb\t1\n\t2\n \" \xC3\xA9 \t3\n", {"a=0.000", "=2.000", " \" \xC3\xA9 =3.000"}},
        {kHead + std::string("n\0l\t1\0001\nb\t2\n", 11), {std::string("n\0l=1.000", 9), "b=2.000"}},
    };
    for (const auto& [bytes, entries] : cases) {
        EXPECT_EQ(read(bytes), entries) << bytes;
    }
}

TEST_F(SnapshotFile, aValueIsTheNumberAtTheStartOfItsToken)
{
    std::string bytes = kHead;
    for (const char* token : {"0x10", "-0x1.8p1", "inf", "-Infinity!", "nan", "+1", ".5", "5.", "1e", "1e39",
                              "-1e39", "1e-60", "1,5", "1.5.7", "--3", "16777217"}) {
        bytes += std::string("\t") + token + "\n";
    }
    EXPECT_EQ(read(bytes),
              (Lines{"=16.000", "=-3.000", "=inf", "=-inf", "=nan", "=1.000", "=0.500", "=5.000", "=1.000",
                     "=inf", "=-inf", "=0.000", "=1.000", "=1.500", "=0.000", "=16777216.000"}));
}

TEST_F(SnapshotFile, isTheSameUnderLocalesWithADecimalComma)
{
    struct Comma : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        std::string do_grouping() const override { return "\3"; }
    };
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new Comma));
    expectExample();
    std::locale::global(before);
    for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8", "pl_PL.UTF-8", "ru_RU.UTF-8", "German"}) {
        if (std::setlocale(LC_ALL, name) && *std::localeconv()->decimal_point == ',') {
            expectExample();
            std::setlocale(LC_ALL, "C");
            return;
        }
    }
    GTEST_SKIP() << "no C locale with a decimal comma is installed";
}

// "folder/name" of each record. Positions are proved on the way.
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
    store.saveSnapshot({{"count", 4294967295U}, {"rate", 0.12345F}, {"a\tb", text}, {"", std::string()}});
    const StatisticsAnalyzer::Snapshot& taken = store.snapshots[0];
    EXPECT_TRUE(before <= taken.name && taken.name <= nameNow()) << taken.name;
    EXPECT_EQ(dir.read("root/100% of it/" + taken.name),
              kHead + "count\t4294967295\nrate\t0.123\na\tb\t1\n2\n\t\n");
    const StatisticsAnalyzer next(dir("root"), "next");
    EXPECT_EQ(records(next), records(store));
    EXPECT_TRUE(taken.values[0].second.isUInt() && next.snapshots[0].values[0].second.isDecimal());
}

#ifndef _WIN32

TEST_F(SnapshotFile, whereNothingCanBeReadOrWrittenNothingHappens)
{
    for (const char* file : {"root/bench", "locked/kept.csv", "secret.csv"}) {
        dir.write(file, kExample);
    }
    EXPECT_EQ(written({}), ""); // the folder is a file
    EXPECT_EQ(dir.read("root/bench"), kExample);
    dir.protect("locked", 0555);
    dir.protect("secret.csv", 0);
    {
        const test::Unprivileged user;
        StatisticsAnalyzer(dir("locked"), "bench").writeSnapshot("bench/a.csv", {});
        EXPECT_EQ(readFile(dir("secret.csv")), Lines{});
    }
    dir.protect("locked", 0755);
    EXPECT_FALSE(dir.has("locked/bench"));
}

TEST_F(SnapshotFile, aFullDiskKeepsWhatStillFits)
{
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit usual{};
    getrlimit(RLIMIT_FSIZE, &usual);
    const rlimit full{48, usual.rlim_max};
    setrlimit(RLIMIT_FSIZE, &full);
    store.writeSnapshot("bench/a.csv", {{"Frame/Time", 16.667F}, {"Frame/Draws", 1250U}, {"Balance", -3}});
    setrlimit(RLIMIT_FSIZE, &usual);
    EXPECT_EQ(dir.read("root/bench/a.csv"), kExample.substr(0, 48));
    EXPECT_EQ(readFile(dir("root/bench/a.csv")), Lines{"Frame/Time=16.667"});
}

TEST_F(SnapshotStore, findsTheFilesOfAllFoldersAsTheFileSystemDeliversThem)
{
    for (const char* file : {"root/not.csv", "root/one/a.csv", "root/one/b", "root/one/deeper/not.csv",
                             "root/two/a.csv", "linked/o.csv"}) {
        dir.write(file, kHead + "x\t1\n");
    }
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
        if (!entry.is_directory() && name.stem() != "not") {
            expected.push_back(name.string());
        }
    }
    const StatisticsAnalyzer store(dir("root"), "bench");
    ASSERT_EQ(records(store), expected);
    ASSERT_EQ(expected.size(), 6U);
    for (const StatisticsAnalyzer::Snapshot& snapshot : store.snapshots) {
        EXPECT_EQ(snapshot.values.size(), snapshot.name == "c.txt" ? 0U : 1U) << snapshot.name;
    }
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

TEST_F(SnapshotStore, clearingDeletesTheFoldersOfTheRecordsWholeAndNothingElse)
{
    for (const char* file : {"root/one/a.csv", "root/one/b.csv", "root/one/deeper/still/c.csv",
                             "root/top.txt", "late/kept.csv", "outside/o.csv", "beside/b.csv"}) {
        dir.write(file, kHead);
    }
    fs::create_directory_symlink(dir("outside"), dir("root/linked"));
    fs::create_directory_symlink(dir("outside"), dir("root/one/linked"));
    fs::create_directory_symlink("../../../beside", dir("root/one/deeper/linked"));
    fs::create_directory_symlink(dir("root"), dir("root/one/up"));
    StatisticsAnalyzer store(dir("root"), "bench");
    store.saveSnapshot({{"a", 1}});
    ASSERT_EQ(store.snapshots.size(), 4U);
    store.addToDiff(3);
    store.addToDiff(4);                        // there is none
    fs::rename(dir("late"), dir("root/late")); // a folder that no record tells of
    fs::remove_all(dir("root/bench"));         // a folder that has become a link meanwhile
    fs::create_directory_symlink(dir("beside"), dir("root/bench"));

    store.clearSnapshots();
    fs::remove(dir("root/top.txt"));
    EXPECT_TRUE(fs::remove_all(dir("root/late")) == 2 && fs::is_empty(dir("root"))); // nothing else was left
    EXPECT_TRUE(dir.has("outside/o.csv") && dir.has("beside/b.csv"));
    EXPECT_TRUE(store.snapshots.empty() && store.diffTable.m_columns.empty() &&
                store.diffTable.m_rows.empty());
    dir.write("root/bench/late.csv", kHead);
    store.clearSnapshots(); // nothing known, nothing deleted
    EXPECT_TRUE(dir.has("root/bench/late.csv"));
    store.saveSnapshot({});
    EXPECT_EQ(store.snapshots[0].index, 0U);
    EXPECT_EQ(dir.read("root/bench/" + store.snapshots[0].name), kHead);
}

#endif

} // namespace
