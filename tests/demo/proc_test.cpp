// What the demo reads under /proc, from folders that look like it: numbers that are given out again,
// strangers' names, values beyond 32 bits. And a machine that gives no threads.
#include "machine_probe.h"
#include "mapping_list.h"
#include "process_list.h"
#include "process_table.h"
#include "support/files.h"
#include "thread_list.h"
#include "worker_pool.h"

#include <gtest/gtest.h>

#include <atomic>
#include <pthread.h>
#include <set>
#include <string>
#include <vector>

namespace {

using demo::ProcessList;
using demo::ProcessRow;

/// A /proc with what the demo reads of tasks.
struct FakeProc {
    void add(int id, const std::string& name, int ticks, int start, const std::string& arguments = {}) const
    {
        const std::string folder = std::to_string(id) + "/";
        dir.write(folder + "stat", std::to_string(id) + " (" + name + ") S 1 1 1 0 -1 0 0 0 0 0 " +
                                       std::to_string(ticks) + " 0 0 0 20 0 1 0 " + std::to_string(start) +
                                       " 4096000 250 0");
        dir.write(folder + "cmdline", arguments);
    }
    std::string folder() const { return dir(""); }

    test::TempDir dir;
};

TEST(Processes, areKnownByNumberAndStart)
{
    const FakeProc proc;
    proc.add(42, "old", 90000, 100, std::string("old\0-v\0", 7));
    ProcessList list(proc.folder());
    const std::vector<ProcessRow> before = list.read();
    ASSERT_EQ(before.size(), 1u);
    EXPECT_EQ(demo::commandLine(proc.folder(), before[0].key), "old -v");

    proc.add(42, "new", 5, 100000, "new");
    const std::vector<ProcessRow> after = list.read();
    ASSERT_EQ(after.size(), 1u);
    EXPECT_NE(after[0].key.start, before[0].key.start);
    EXPECT_TRUE(after[0].loadPercent.isEmpty()); // and no -100 %
    EXPECT_FALSE(demo::isAlive(proc.folder(), before[0].key));
    EXPECT_EQ(demo::commandLine(proc.folder(), before[0].key), "");
    EXPECT_FALSE(list.read()[0].loadPercent.isEmpty());
}

TEST(Processes, areForgottenAmongTheHiddenWhenTheyEnd)
{
    const FakeProc proc;
    proc.add(42, "hidden", 1, 100);
    proc.add(43, "hidden, too", 1, 100);
    ProcessList list(proc.folder());
    std::vector<ProcessRow> rows = list.read();
    std::set<demo::TaskKey> hidden = {rows[0].key, rows[1].key};
    proc.add(42, "a\tb\nc) R 1", 1, 200); // a stranger's name can't break a row
    rows = list.read();
    demo::takeOutHidden(rows, hidden);
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0].name, "a?b?c) R 1");
    EXPECT_EQ(demo::ThreadList(proc.folder()).read()[0].name, "a?b?c) R 1");
    EXPECT_EQ(hidden.size(), 1u);
}

TEST(Mappings, mayBeLargerThan32BitsTell)
{
    const std::string text =
        "7e0000000000-860000000000 ---p 00000000 00:00 0 \n"
        "Size:         8589934592 kB\nRss:        4 kB\nPrivate_Dirty:   4 kB\nVmFlags: rd\n"
        "860000000000-860000001000 r--p 00000000 fe:00 7 /tmp/two words\n"
        "Size:                  4 kB\nVmFlags: rd\n";
    const auto rows = demo::parseMappings(text);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].sizeMiB, 8 * 1024 * 1024);
    EXPECT_EQ(rows[0].residentMiB, 1.0 / 256);
    EXPECT_EQ(rows[0].path, "");
    EXPECT_EQ(rows[1].path, "/tmp/two words");
    EXPECT_EQ(demo::toCount(5e9).toUInt(), 4294967295u);
}

TEST(Rates, areOfTheTimeSinceTheLastReading)
{
    demo::Rate rate;
    EXPECT_FALSE(rate.perSecond(10, 100));
    EXPECT_EQ(rate.perSecond(30, 110), 2);
}

TEST(Processors, areAllShownThoughOneIsOffline)
{
    const test::TempDir dir;
    dir.write("stat", "cpu 9 0 0 9\ncpu0 1 0 0 9 4 0 0 0 1\ncpu2 8 0 0 2\nctxt 5\n");
    demo::MachineProbe probe(dir(""));
    probe.read();
    // Waiting is no work, and what guests take is part of the first number.
    dir.write("stat", "cpu 9 0 0 9\ncpu0 2 0 0 10 6 0 0 0 9\ncpu2 9 0 0 2\nctxt 5\n");
    probe.read();
    const auto& processors = probe.reading().processors;
    ASSERT_EQ(processors.size(), 3u);
    EXPECT_EQ(processors[0].toFloat(), 25);
    EXPECT_TRUE(processors[1].isEmpty());
    EXPECT_EQ(processors[2].toFloat(), 100);
    dir.write("stat", "cpu 9 0 0 9\ncpu0 2 0 0 12\nctxt 5\n");
    probe.read();
    EXPECT_TRUE(processors[2].isEmpty());
}

TEST(Workers, areFewerWhereNoThreadCanBeStarted)
{
    pthread_attr_t usual;
    pthread_attr_t impossible;
    ASSERT_EQ(pthread_getattr_default_np(&usual), 0);
    pthread_attr_init(&impossible);
    pthread_attr_setstacksize(&impossible, std::size_t{1} << 50u);
    ASSERT_EQ(pthread_setattr_default_np(&impossible), 0);
    demo::WorkerPool pool(3);
    pthread_setattr_default_np(&usual);

    EXPECT_EQ(pool.size(), 0u);
    std::atomic<std::size_t> done{0};
    pool.run(100, [&done](std::size_t begin, std::size_t end) { done += end - begin; });
    EXPECT_EQ(done, 100u);
}

} // namespace
