// Snapshots as a user meets them, and what hosts and file systems do meanwhile.
#include "support/files.h"
#include "support/panel.h"
#include "support/test_access.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

namespace {

namespace fs = std::filesystem;
using statistics::CounterValue;
using statistics::StatisticsAnalyzer;
using statistics::TestAccess;
using Lines = std::vector<std::string>;

const std::string kHead = "sep=\t\nCaption\tValue\n";

class SnapshotPanel : public test::Panel {
protected:
    bool create(const std::string& root = "root")
    {
        return system().createStatsAnalyzer(dir(root), "bench", [this] { saveDiff(); });
    }
    void createOpened()
    {
        dir.write("root/old/one.csv", kHead + "same\t7\nx\t1\n");
        dir.write("root/old/two.csv", kHead + "x\t2.5\nsame\t7\n");
        EXPECT_TRUE(create());
        const Lines way{"Diff", "Snapshots", "old", "one.csv"};
        for (std::size_t level = 1; level < way.size(); ++level) {
            ui.frames(2);
            if (!ui.read().contains(way[level])) // what was open before is open again
                ui.click(way[level - 1]);
        }
        ui.frames(2);
    }
    void click(const Lines& texts)
    {
        for (const std::string& text : texts) {
            ui.frames(2); // the host may have changed what is shown
            ui.click(text);
        }
    }
    static unsigned addCounter(const std::string& name, unsigned parent, std::function<CounterValue()> getter)
    {
        auto counter = std::make_unique<statistics::Counter>(std::move(getter), "%.0f ms");
        return system().createCounter(name, std::move(counter), 9, parent);
    }
    static std::vector<StatisticsAnalyzer::Snapshot>& snapshots()
    {
        return TestAccess::data().statsAnalyzer->snapshots;
    }
    std::string lastFile() { return dir.read("root/bench/" + snapshots().back().name); }
    /// The lines of the comparison.
    Lines compared()
    {
        Lines lines = ui.read().lines();
        while (!lines.empty() && lines[0].rfind("N | ", 0) != 0)
            lines.erase(lines.begin());
        return lines;
    }

    test::TempDir dir;
    std::function<void()> saveDiff;
};

TEST_F(SnapshotPanel, aSnapshotHoldsTheFreshValueOfEveryCounterUnderItsPath)
{
    createOpened();
    click({"Take snapshot"});
    EXPECT_EQ(lastFile(), kHead);
    float time = 16.6667f;
    const unsigned frame = system().createLabel("Frame");
    const unsigned rows = system().createTable("Rows", nullptr, 9, frame);
    addCounter("Time", system().createLabel("Render", frame), [&] { return time; });
    addCounter("Busy", rows, [] { return -1; });
    system().createLabel("Nothing below");
    addCounter("One", system().createChildrenCounter("Sum", 0, 0, ""), [] { return 5u; });
    addCounter("None", 0, [] { return CounterValue(); });
    click({"Take snapshot"}); // nothing has been sampled yet
    time = 20;
    click({"Take snapshot"});
    EXPECT_EQ(lastFile(), kHead + "Frame/Rows/Busy\t-1\nFrame/Render/Time\t20.000\nSum\t5\nSum/One\t5\n"
                                  "None\t---\n");
}

TEST_F(SnapshotPanel, tickedSnapshotsStandSideBySideUntilTheyAreUntickedOrCleared)
{
    createOpened();
    ui.clickBox("two.csv");
    EXPECT_EQ(compared(), (Lines{"N | Caption | two.csv", "1 | x | 2.5", "2 | same | 7"}));
    click({"Take snapshot", "bench"});
    EXPECT_EQ(compared().size(), 3u);
    EXPECT_TRUE(ui.ticked("two.csv"));
    EXPECT_FALSE(ui.ticked(snapshots()[2].name));
    ui.clickBox("one.csv");
    EXPECT_EQ(compared(), (Lines{"N | Caption | two.csv | one.csv", "1 | x | 2.5 | 1", "2 | same | 7 | 7"}));
    ui.clickBox("two.csv");
    ui.clickBox("two.csv");
    TestAccess::updateSnapshots(); // all are shown already
    ui.frame();
    EXPECT_EQ(compared()[0], "N | Caption | one.csv | two.csv");
    ui.click("Clear tree");
    EXPECT_EQ(ui.read().lines(),
              (Lines{"Statistics", "Diff", "Snapshots", "Clear tree | Take snapshot | Save diff"}));
    EXPECT_TRUE(system().getDiffTable().m_columns.empty());
    EXPECT_TRUE(fs::is_empty(dir("root")));
    click({"Take snapshot"}); // its folder is still open
    EXPECT_EQ(snapshots()[0].index, 0u);
    EXPECT_FALSE(ui.ticked(snapshots()[0].name));
}

TEST_F(SnapshotPanel, twoSnapshotsOfOneSecondShareFileAndBoxButNotTheRecord)
{
    int value = 0;
    addCounter("x", 0, [&] { return ++value; });
    createOpened();
    do {
        TestAccess::takeSnapshot();
        TestAccess::takeSnapshot();
    } while (snapshots().rbegin()[0].name != snapshots().rbegin()[1].name); // a second had just passed
    const std::string name = snapshots().back().name;
    EXPECT_EQ(lastFile(), kHead + "x\t" + std::to_string(value) + "\n");
    click({"bench"});
    EXPECT_EQ(ui.read().findAll(name).size(), 1u);
    ui.clickBox(name);
    const std::size_t ticked = system().getDiffTable().m_columns.at(0).snapshot;
    EXPECT_EQ(snapshots()[ticked].name, name);
    EXPECT_LT(ticked, snapshots().size() - 1);
    EXPECT_LT(snapshots()[ticked].values[0].second, value);
}

TEST_F(SnapshotPanel, snapshotsAreTurnedOffAndOnAgain)
{
    addCounter("same", 0, [] { return 7u; });
    addCounter("x", 0, [] { return 1.25f; });
    createOpened();
    ui.clickBox("one.csv");
    EXPECT_FALSE(create("ignored"));
    EXPECT_TRUE(system().removeStatsAnalyzer());
    EXPECT_FALSE(system().removeStatsAnalyzer());
    EXPECT_FALSE(show().contains("Diff"));
    test::Reports reports;
    EXPECT_TRUE(system().getDiffTable().m_columns.empty());
    EXPECT_EQ(reports.expressions(), Lines{"m_data->statsAnalyzer"});
    const std::string told = "Cannot access statistics diff table. StatsAnalyzer instance was not created.";
    EXPECT_NE(reports.texts().at(0).find(told), std::string::npos);
    createOpened();
    EXPECT_FALSE(ui.ticked("one.csv"));
    click({"Take snapshot", "bench"});
    ui.clickBox("one.csv");
    ui.clickBox(snapshots()[2].name);
    EXPECT_EQ(compared().at(1), "1 | same | 7 | 7");
    EXPECT_EQ(compared().at(2), "2 | x | 1 | 1.25");
    EXPECT_FALSE(system().getDiffTable().m_rows[0].changed); // a Decimal from the file, a UInt just taken
}

TEST_F(SnapshotPanel, turningOffGivesBackAllThatSnapshotsTookAndFullPoolsAreNoMatter)
{
    const auto labels = [] {
        const auto& pool = TestAccess::render().labels;
        unsigned count = 0;
        for (auto slot = pool.begin(); slot != pool.end(); slot = pool.next(slot))
            ++count;
        return count;
    };
    const unsigned before = labels();
    createOpened();
    click({"Clear tree", "Take snapshot"});
    system().removeStatsAnalyzer();
    EXPECT_TRUE(TestAccess::render().checkboxes.empty());
    EXPECT_EQ(labels(), before);
    for (unsigned label = labels(); label < statistics::kMostSlots; ++label)
        TestAccess::render().createLabel("");
    fs::remove_all(dir("root"));
    EXPECT_TRUE(create());
    EXPECT_FALSE(create());
    EXPECT_TRUE(system().removeStatsAnalyzer());
    EXPECT_FALSE(system().removeStatsAnalyzer());
}

TEST_F(SnapshotPanel, pointingAtClearTreeTellsWhatItDeletes)
{
    dir.write("root/linked to/three.csv", kHead);
    dir.write("root/old/deeper/four.txt", "");
    dir.write("root/old/one.csv", kHead);
    dir.write("other/one/a.csv", kHead);
    EXPECT_TRUE(create());
    ImGui::GetIO().DisplaySize.x = 20000; // for any root's path
    click({"Diff"});
    ui.moveTo("Clear tree"); // and rest there
    const auto tells = [this](const char* what, const char* root = "root") {
        ui.frames(2);
        return ui.read().contains("Deletes " + (what + (" below " + dir(root))));
    };
    EXPECT_TRUE(tells("2 folders with 3 files"));
    dir.write("root/old/late.txt", "");
    EXPECT_TRUE(tells("2 folders with 3 files")) << "counted once";
    system().recordSnapshot();
    EXPECT_TRUE(tells("3 folders with 5 files"));
    for (int file = 0; file < 1000; ++file)
        dir.write("root/old/deeper/" + std::to_string(file), "");
    system().recordSnapshot();
    ui.frames(2);
    EXPECT_TRUE(ui.read().findContaining("with at least "));
    TestAccess::clearSnapshots(); // as a press of a key does
    EXPECT_TRUE(tells("0 folders with 0 files"));
    EXPECT_TRUE(system().removeStatsAnalyzer());
    EXPECT_TRUE(create("other"));
    EXPECT_TRUE(tells("1 folder with 1 file", "other"));
}

TEST_F(SnapshotPanel, rootsAndFoldersThatLeadElsewhereAreRefused)
{
    const std::string nul("a\0b", 3);
    const std::string root = dir("root");
    const std::string tooLong(256, 'f');
    for (const std::string& folder :
         Lines{"", ".", "..", "a/b", "a/", "/", "/a", "../a", nul, tooLong, "bench"}) {
        const bool isFolder = folder == "bench";
        for (const std::string& badRoot : Lines{isFolder ? "" : root, isFolder ? root + nul : root}) {
            test::Reports reports;
            EXPECT_FALSE(system().createStatsAnalyzer(badRoot, folder, {}));
            EXPECT_EQ(reports.expressions(), Lines{isFolder ? "isRootName(root)" : "isFolderName(folder)"});
        }
    }
    EXPECT_TRUE(fs::is_empty(dir("")));
    EXPECT_TRUE(system().createStatsAnalyzer(root, "..and more", {}));
    click({"Diff", "Save diff"}); // an empty function: nothing happens
}

TEST_F(SnapshotPanel, functorsMayThrowOrDropTheStore)
{
    std::function<void()> hook;
    addCounter("Hook", 0, [&] {
        hook();
        return 1;
    });
    saveDiff = [&] { hook(); };
    for (const char* button : {"Take snapshot", "Save diff"}) {
        createOpened();
        ui.clickBox("one.csv");
        hook = [] { throw std::runtime_error("no"); };
        EXPECT_THROW(ui.click(button), std::runtime_error);
        EXPECT_EQ(ui.imbalance(), "");
        ui.frame();
        EXPECT_EQ(compared().size(), 3u);
        EXPECT_EQ(snapshots().size(), 2u);
        EXPECT_FALSE(dir.has("root/bench"));
        hook = [&] {
            const statistics::DiffTable& held = system().getDiffTable();
            EXPECT_TRUE(system().removeStatsAnalyzer());
            EXPECT_TRUE(create("other"));
            EXPECT_EQ(held.m_rows.size(), 2u);
        };
        ui.click(button);
        hook = [] { system().removeStatsAnalyzer(); };
        click({button}); // "Diff" is open as it was
        EXPECT_FALSE(ui.read().contains("Diff"));
        EXPECT_TRUE(create("other"));
        EXPECT_EQ(system().recordSnapshot().problem, "snapshots were turned off meanwhile");
    }
}

TEST_F(SnapshotPanel, whatSaveDiffHoldsMayTurnSnapshotsOnAgainWhenItGoes)
{
    std::shared_ptr<void> atEnd(nullptr, [this](void*) { EXPECT_TRUE(create()); });
    EXPECT_TRUE(system().createStatsAnalyzer(dir("other"), "bench", [held = std::move(atEnd)] {}));
    EXPECT_TRUE(system().removeStatsAnalyzer());
    click({"Diff", "Take snapshot"});
    EXPECT_TRUE(dir.has("root/bench"));
}

TEST_F(SnapshotPanel, codeRecordsSnapshotsAndLearnsWhatBecameOfThem)
{
    EXPECT_EQ(system().recordSnapshot().problem, "snapshots are off");
    addCounter("A", 0, [] { return 1; });
    createOpened();
    const statistics::RecordedSnapshot recorded = system().recordSnapshot();
    EXPECT_EQ(recorded.problem, "");
    EXPECT_EQ(recorded.file, dir("root/bench/" + snapshots().back().name));
    EXPECT_EQ(lastFile(), kHead + "A\t1\n");

    fs::remove_all(dir("root"));
    dir.write("root", "a file where the folder was");
    EXPECT_NE(system().recordSnapshot().problem, "");
    EXPECT_EQ(snapshots().back().values.size(), 1u); // in memory all the same
}

#ifndef _WIN32

void expectFailure(const char* operation, const std::function<void()>& action)
{
    const test::Unprivileged user;
    try {
        action();
        ADD_FAILURE() << "no " << operation;
    } catch (const fs::filesystem_error& error) {
        EXPECT_NE(std::string(error.what()).find(operation), std::string::npos) << error.what();
    }
}

TEST_F(SnapshotPanel, theBoxOfSnapshotsOfOneSecondTellsWhetherTheirFileIsThereAndWhyNot)
{
    EXPECT_TRUE(create());
    const auto take = [this](std::string_view disk) {
        if (disk != "full")
            fs::remove_all(dir("root"));
        if (disk == "blocked")
            dir.write("root/bench", "a file where the folder should be");
        rlimit usual{};
        getrlimit(RLIMIT_NOFILE, &usual);
        const rlimit files{disk == "full" ? 0 : usual.rlim_cur, usual.rlim_max};
        setrlimit(RLIMIT_NOFILE, &files);
        TestAccess::takeSnapshot();
        setrlimit(RLIMIT_NOFILE, &usual);
    };
    const auto note = [] {
        statistics::SnapshotGroup& group = TestAccess::data().snapshotGroup;
        return *group.findNote(snapshots().back().name, "bench", TestAccess::render());
    };
    const std::tuple<const char*, const char*, bool> cases[] = {
        {"blocked", "free", true}, {"free", "full", true}, {"free", "blocked", false}};
    for (const auto& [first, second, isThere] : cases) {
        do {
            take(first);
            take(second);
        } while (snapshots().rbegin()[0].name != snapshots().rbegin()[1].name);
        EXPECT_EQ(note().empty(), isThere) << note();
    }
    click({"Diff", "Snapshots", "bench"});
    ui.moveTo(snapshots().back().name);
    ui.frames(2);
    EXPECT_TRUE(ui.read().contains("Not on disk: its folder can't be made: Not a directory"));
    EXPECT_EQ(dir.read("root/bench"), "a file where the folder should be");
}

TEST_F(SnapshotPanel, aScanThatFailsLeavesNoStoreBehind)
{
    dir.write("root/old/one.csv", kHead);
    const auto expectNone = [&](const char* operation) {
        expectFailure(operation, [&] { create(); });
        EXPECT_EQ(TestAccess::data().statsAnalyzer, nullptr);
        EXPECT_FALSE(show().contains("Diff"));
    };
    for (const char* loop : {"root/loop", "root/old/loop"}) {
        fs::create_symlink("loop", dir(loop));
        expectNone("directory_entry::status");
        fs::remove(dir(loop));
    }
    dir.protect("root/old", 0);
    expectNone("directory_iterator::directory_iterator");
    dir.protect("root/old", 0755);
    EXPECT_TRUE(create());
}

TEST_F(SnapshotPanel, aFolderThatCannotBeDeletedKeepsEverythingInThePanel)
{
    dir.write("root/new/three.csv", kHead + "x\t1\n");
    createOpened();
    click({"new"});
    ui.clickBox("one.csv");
    ui.clickBox("three.csv");
    const Lines before = ui.read().lines();
    const std::string first = "root/" + snapshots().front().folder;
    const std::string last = "root/" + snapshots().back().folder;
    dir.protect("root", 0777);
    dir.protect(first, 0777);
    dir.protect(last, 0555);
    expectFailure("remove_all", [&] { ui.click("Clear tree"); });
    EXPECT_EQ(ui.imbalance(), "");
    EXPECT_FALSE(dir.has(first));
    EXPECT_FALSE(fs::is_empty(dir(last)));
    ui.frame();
    EXPECT_EQ(ui.read().lines(), before);
    dir.protect(last, 0777);
    ui.click("Clear tree");
    EXPECT_TRUE(fs::is_empty(dir("root")));
    EXPECT_EQ(snapshots().size(), 0u);
    EXPECT_EQ(compared(), Lines{});
}

#endif

} // namespace
