// One snapshot as a file: the bytes, out and in, and what is told of a file that can't be written or read.
#include "native_file.h"
#include "snapshot_file.h"
#include "statistics_analyzer.h"
#include "support/files.h"

#include <gtest/gtest.h>

#include <clocale>
#include <csignal>
#include <locale>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#ifndef _WIN32
#include <sched.h>
#include <sys/resource.h>
#include <sys/stat.h>
#endif

namespace {

namespace fs = std::filesystem;
using statistics::ESnapshotHead;
using statistics::ESnapshotRead;
using statistics::ESnapshotWrite;
using statistics::SnapshotValues;
using Lines = std::vector<std::string>;

const std::string kHead = "sep=\t\nCaption\tValue\n";
const std::string kExample =
    kHead + "Frame/Time\t16.667\nFrame/Draws\t1250\nBalance\t-3\nRegion\tnorth\nIdle\t---\n";
const Lines kExampleRead{"Frame/Time=16.667", "Frame/Draws=1250.000", "Balance=-3.000", "Region=0.000",
                         "Idle=0.000"};

/// "caption=number" of each entry, numbers with three decimals.
Lines readFile(const std::string& path)
{
    Lines entries;
    SnapshotValues values;
    statistics::readSnapshotFile(path, values);
    for (const auto& [caption, value] : values)
        entries.push_back(caption + "=" + value.toString(nullptr));
    return entries;
}

class SnapshotFile : public testing::Test {
protected:
    std::string written(const SnapshotValues& values)
    {
        writing = statistics::writeSnapshotFile(dir("root"), "bench/a.csv", values);
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
        EXPECT_EQ(written({{"Frame/Time", 16.667f},
                           {"Frame/Draws", 1250u},
                           {"Balance", -3},
                           {"Region", north},
                           {"Idle", {}}}),
                  kExample);
        EXPECT_EQ(read(kExample), kExampleRead);
        EXPECT_EQ(read(kHead + "a\t1234567.25\n"), Lines{"a=1234567.250"}); // more digits than are usual
    }

    test::TempDir dir;
    statistics::SnapshotWriting writing; // the last
};

TEST_F(SnapshotFile, holdsCaptionTabAndValuePerLineAsTheDocumentedExample)
{
    expectExample();
    std::string many = kHead;
    for (int line = 0; line < 10000; ++line)
        many += "Frame/Draws\t1250\n";
    EXPECT_EQ(written(SnapshotValues(10000, {"Frame/Draws", 1250})), many);
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
        {std::string(statistics::kLongestSnapshotLine, 'x') + "\n\na\t1\n", {"a=1.000"}},
    };
    for (const auto& [bytes, entries] : cases)
        EXPECT_EQ(read(bytes), entries) << bytes.substr(0, 40);
}

TEST_F(SnapshotFile, aValueIsTheNumberAtTheStartOfItsToken)
{
    std::string bytes = kHead;
    for (const char* token : {"0x10", "-0x1.8p1", "inf", "-Infinity!", "nan", "+1", ".5", "5.", "1e", "1e39",
                              "-1e39", "1e-60", "1,5", "1.5.7", "--3", "16777217", "-", "."})
        bytes += std::string("\t") + token + "\n";
    EXPECT_EQ(read(bytes), (Lines{"=16.000", "=-3.000", "=inf", "=-inf", "=nan", "=1.000", "=0.500", "=5.000",
                                  "=1.000", "=inf", "=-inf", "=0.000", "=1.000", "=1.500", "=0.000",
                                  "=16777216.000", "=0.000", "=0.000"}));
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

TEST_F(SnapshotFile, aVisitGetsCaptionsAndRawTextsWithTheirLines)
{
    dir.write("a.csv", kHead + "a\t 12 apples \nb/c\t\r\n\td\te\nlast\t-0");
    Lines seen;
    const auto see = [&](const statistics::SnapshotLine& line) {
        seen.push_back(std::to_string(line.number) + (line.ended ? ":" : "!") + std::string(line.caption) +
                       "=" + std::string(line.value));
        return line.caption != "b/c" || seen.size() > 2;
    };
    EXPECT_EQ(visitSnapshotFile(dir("a.csv"), ESnapshotHead::Strict, see).end, ESnapshotRead::Stopped);
    EXPECT_EQ(visitSnapshotFile(dir("a.csv"), ESnapshotHead::Strict, see).end, ESnapshotRead::Cut);
    EXPECT_EQ(seen,
              (Lines{"3:a= 12 apples ", "4:b/c=", "3:a= 12 apples ", "4:b/c=", "5:=d\te", "6!last=-0"}));
}

TEST_F(SnapshotFile, theReadingTellsHowAndWhereItEnded)
{
    const std::string longest(statistics::kLongestSnapshotLine - 2, 'x');
    struct Case {
        std::string bytes;
        ESnapshotRead end;
        std::size_t line;
    };
    const Case cases[] = {
        {"", ESnapshotRead::NoSnapshot, 0},
        {"sep=;\nCaption;Value\n", ESnapshotRead::NoSnapshot, 1},
        {"sep=\t\nCaption\n", ESnapshotRead::NoSnapshot, 2},
        {std::string(longest.size() * 2, '\0'), ESnapshotRead::NoSnapshot, 1},
        {"sep=\t\r\nCaption\tValue\r\n", ESnapshotRead::Whole, 2},
        {kHead + "a\t" + longest + "\nb\t1\n", ESnapshotRead::Whole, 4},
        {kHead + "aa\t" + longest + "\nb\t1\n", ESnapshotRead::LineTooLong, 3},
        {kHead + "a\t1\nb\t" + longest + longest, ESnapshotRead::LineTooLong, 4},
        {kHead + "a\t1\n\nb\t1\n", ESnapshotRead::Malformed, 4},
        {kHead + "a\t1\nb", ESnapshotRead::Cut, 4},
        {kHead + "a\t1\nb\t12", ESnapshotRead::Cut, 4},
    };
    for (const auto& [bytes, end, line] : cases) {
        dir.write("a.csv", bytes);
        const auto reading = visitSnapshotFile(dir("a.csv"), ESnapshotHead::Strict,
                                               [](const statistics::SnapshotLine&) { return true; });
        EXPECT_EQ(reading.end, end) << bytes.substr(0, 40);
        EXPECT_EQ(reading.line, line) << bytes.substr(0, 40);
    }
    SnapshotValues values;
    for (const char* name : {"none.csv", "a.csv/none.csv"})
        EXPECT_EQ(readSnapshotFile(dir(name), values).end, ESnapshotRead::Missing) << name;
    EXPECT_EQ(values.size(), 0u);
}

#ifndef _WIN32

std::size_t filesIn(const std::string& directory)
{
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(directory), fs::directory_iterator()));
}

TEST_F(SnapshotFile, onlyRegularFilesAreReadAndNothingIsWaitedFor)
{
    mkfifo(dir("pipe").c_str(), 0600);
    fs::create_symlink("/dev/zero", dir("endless"));
    SnapshotValues values;
    for (const char* name : {"pipe", "endless", ""})
        EXPECT_EQ(readSnapshotFile(dir(name), values).end, ESnapshotRead::NotRegular) << name;
    dir.write("secret.csv", kExample);
    dir.protect("secret.csv", 0);
    const test::Unprivileged user;
    const statistics::SnapshotReading reading = readSnapshotFile(dir("secret.csv"), values);
    EXPECT_EQ(reading.end, ESnapshotRead::Unreadable);
    EXPECT_EQ(describe(reading), "it can't be read: Permission denied");
}

TEST_F(SnapshotFile, whatStandsAtItsNameIsReplacedAndNeverWrittenThrough)
{
    dir.write("outside.csv", "mine");
    fs::create_directories(dir("root/bench"));
    fs::create_symlink(dir("outside.csv"), dir("root/bench/a.csv"));
    EXPECT_EQ(written({{"a", 1}}), kHead + "a\t1\n");
    EXPECT_EQ(dir.read("outside.csv"), "mine");
    std::error_code taken;
    statistics::NativeFile::create(dir("outside.csv"), taken).close(taken);
    EXPECT_EQ(taken, std::errc::file_exists);
    fs::remove(dir("root/bench/a.csv"));
    mkfifo(dir("root/bench/a.csv").c_str(), 0600); // whoever opens it waits for ever
    EXPECT_EQ(written({{"a", 2}}), kHead + "a\t2\n");
    EXPECT_EQ(writing.step, ESnapshotWrite::Written);
    fs::remove(dir("root/bench/a.csv"));
    fs::create_directory(dir("root/bench/a.csv"));
    const auto refused = statistics::writeSnapshotFile(dir("root"), "bench/a.csv", {});
    EXPECT_EQ(refused.step, ESnapshotWrite::NotPlaced);
    const auto unnamed = statistics::writeSnapshotFile(dir("root"), "bench/" + std::string(256, 'n'), {});
    EXPECT_EQ(describe(unnamed), "no file can be made: File name too long");
    EXPECT_EQ(filesIn(dir("root")), 1u);
}

TEST_F(SnapshotFile, aFullDiskLeavesWhatStoodThereAndTellsIt)
{
    const std::string before = written({{"a", 1}});
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit usual{};
    getrlimit(RLIMIT_FSIZE, &usual);
    const rlimit full{48, usual.rlim_max};
    setrlimit(RLIMIT_FSIZE, &full);
    const std::string after = written({{"Frame/Time", 16.667f}, {"Frame/Draws", 1250u}, {"Balance", -3}});
    setrlimit(RLIMIT_FSIZE, &usual);
    EXPECT_EQ(after, before);
    EXPECT_EQ(describe(writing), "not all of it could be written: File too large");
    EXPECT_EQ(filesIn(dir("root")), 1u);
}

TEST_F(SnapshotFile, whatKilledProcessesLeftGoesWithTheNextAndNothingElse)
{
    const std::string leftover = "root/.snapshot-1-2.part";
    fs::create_directories(dir("root/.snapshot-3-4.part"));
    dir.write("root/.snapshot-mine", "mine");
    dir.write(leftover, kHead + "a\t1");
    std::error_code error;
    const auto atWork = statistics::NativeFile::create(dir("root/.snapshot-5-6.part"), error);
    atWork.claim();
    statistics::StatisticsAnalyzer(dir("root"), "bench").saveSnapshot({});
    EXPECT_FALSE(dir.has(leftover));
    EXPECT_EQ(filesIn(dir("root")), 4u) << "the folder, and what is no leftover";
    written({{"a", 1}});
    dir.write(leftover, kHead + "a\t1");
    EXPECT_EQ(written({{"a", 2}}), kHead + "a\t2\n");
    EXPECT_FALSE(dir.has(leftover)) << "where something stands at the name";
    EXPECT_EQ(filesIn(dir("root")), 4u);
}

TEST_F(SnapshotFile, aNamelessFileIsSeenWhenItIsWholeAndReplacesNothing)
{
    const auto writeAndName = [this] {
#ifdef CLONE_FILES
        unshare(CLONE_FILES); // descriptors of the thread's own
#endif
        std::error_code error;
        const auto file = statistics::NativeFile::createNameless(dir(""), error);
        if (error)
            GTEST_SKIP() << error.message();
        file.write("whole", error);
        EXPECT_EQ(filesIn(dir("")), 0u);
        file.giveName(dir("one"), error);
        EXPECT_EQ(dir.read("one"), "whole") << error.message();
        dir.write("two", "mine");
        file.giveName(dir("two"), error);
        EXPECT_EQ(error, std::errc::file_exists);
        EXPECT_EQ(dir.read("two"), "mine");
    };
    std::thread(writeAndName).join();
}

/// A folder on another file system than `here`, wherever that is.
const char* otherFileSystem(const std::string& here)
{
    struct stat own {};
    struct stat memory {};
    const bool both = stat(here.c_str(), &own) == 0 && stat("/dev/shm", &memory) == 0;
    return both && own.st_dev != memory.st_dev ? "/dev/shm" : "/var/tmp";
}

TEST_F(SnapshotFile, whereNoFileCanBeMadeInTheRootItIsMadeInItsFolder)
{
    dir.write("root/bench/a.csv", "a longer file that was there before, and goes");
    dir.protect("root/bench", 0777);
    dir.protect("root/bench/a.csv", 0444);
    dir.protect("root", 0555);
    {
        const test::Unprivileged user;
        EXPECT_EQ(written({}), kHead);
    }
    dir.protect("root", 0755);
    const fs::path other = fs::path(otherFileSystem(dir(""))) / fs::path(dir("")).parent_path().filename();
    std::error_code error;
    if (!fs::create_directory(other, error))
        GTEST_SKIP() << "no second file system";
    fs::remove_all(dir("root/bench"));
    fs::create_directory_symlink(other, dir("root/bench"));
    fs::create_symlink(dir("outside.csv"), dir("root/bench/a.csv"));
    const fs::file_time_type longAgo{};
    fs::last_write_time(dir("root"), longAgo);
    EXPECT_EQ(written({{"a", 1}}), kHead + "a\t1\n");
    EXPECT_FALSE(dir.has("outside.csv"));
    fs::remove(dir("root/bench/a.csv"));
    fs::create_directory(dir("root/bench/a.csv"));
    const auto refused = statistics::writeSnapshotFile(dir("root"), "bench/a.csv", {});
    EXPECT_TRUE(fs::is_directory(dir("root/bench/a.csv")));
    EXPECT_EQ(refused.step, ESnapshotWrite::NotCreated);
    EXPECT_EQ(filesIn(dir("root")), 1u);
    EXPECT_EQ(fs::last_write_time(dir("root")), longAgo) << "its disk may be full";
    fs::remove_all(other);
}

#endif

} // namespace
