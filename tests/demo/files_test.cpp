// The demo's files in folders where anything may lie, beside other demos, and after some that were killed.
#include "files.h"
#include "presets.h"
#include "run_number.h"
#include "save_file.h"
#include "support/files.h"

#include <statistics/statistics.h>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <filesystem>
#include <future>
#include <set>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

namespace fs = std::filesystem;
using statistics::ItemPreset;
using statistics::System;

std::string problemOf(const std::string& path)
{
    return demo::readRegularFile(path, 1024).problem;
}

TEST(UsersFile, isReadOnlyIfItIsOne)
{
    const test::TempDir dir;
    dir.write("largest", std::string(1024, ' '));
    dir.write("too large", std::string(1025, ' '));
    dir.write("secret", "");
    dir.protect("secret", 0);
    fs::create_symlink(dir("nothing"), dir("dangling"));
    fs::create_symlink("/dev/zero", dir("endless"));
    ASSERT_EQ(mkfifo(dir("pipe").c_str(), 0666), 0);

    const test::Unprivileged user;
    EXPECT_EQ(problemOf(dir("largest")), "");
    EXPECT_EQ(problemOf(dir("too large")), "is larger than 1 KiB");
    EXPECT_EQ(problemOf(dir("secret")), "can't be read: Permission denied");
    EXPECT_EQ(problemOf(dir("dangling")), "is a link to nothing");
    EXPECT_EQ(problemOf(dir("endless")), "is no regular file");
    EXPECT_EQ(problemOf(dir("pipe")), "is no regular file");
    EXPECT_EQ(problemOf(dir("")), "is no regular file");
}

TEST(SavedFile, followsALinkAndKeepsItsMode)
{
    const test::TempDir dir;
    dir.write("elsewhere/real", "old");
    dir.protect("elsewhere/real", 0640);
    fs::create_symlink("elsewhere/real", dir("link"));
    EXPECT_EQ(demo::saveText(dir("link"), "new"), "");
    EXPECT_TRUE(fs::is_symlink(dir("link")));
    EXPECT_EQ(dir.read("elsewhere/real"), "new");
    EXPECT_EQ(static_cast<int>(fs::status(dir("link")).permissions()), 0640);
}

TEST(SavedFile, leavesNothingBesideIt)
{
    const test::TempDir dir;
    EXPECT_EQ(demo::saveText(dir("a/file"), "text"), "");
    fs::create_directory(dir("a/folder"));
    EXPECT_NE(demo::saveText(dir("a/folder"), "text"), "");
    EXPECT_EQ(demo::entriesOf(dir("a")).size(), 2U);
}

TEST(SavedFile, mayBeNamedWithoutAFolder)
{
    const test::TempDir dir;
    const fs::path before = fs::current_path();
    fs::current_path(dir(""));
    EXPECT_EQ(demo::replaceText("report.txt", "text"), "");
    fs::current_path(before);
    EXPECT_EQ(dir.read("report.txt"), "text");
}

TEST(SavedFile, comesWithoutTheLeftoversOfTheKilled)
{
    const test::TempDir dir;
    for (const char* name : {"a.json.new4711-0", "a.json.new4712-0", "a.json.new", "b.new4711-0.json"})
        dir.write(name, "half");
    const int atWork = open(dir("a.json.new4712-0").c_str(), O_WRONLY);
    ASSERT_EQ(flock(atWork, LOCK_EX), 0);
    demo::sweepLeftovers(dir(""));
    close(atWork);
    EXPECT_FALSE(dir.has("a.json.new4711-0"));
    EXPECT_EQ(demo::entriesOf(dir("")).size(), 3U);
}

TEST(RunNumbers, areGivenOutOnce)
{
    const test::TempDir dir;
    fs::create_directories(dir("snapshots/run-7"));
    fs::create_directories(dir("snapshots/run-18446744073709551615"));
    const auto takeSome = [&dir] {
        std::vector<std::uint64_t> numbers;
        for (int i = 0; i < 50; ++i)
            numbers.push_back(demo::takeRunNumber(dir(""), dir("snapshots")).number);
        return numbers;
    };
    auto other = std::async(std::launch::async, takeSome);
    std::set<std::uint64_t> all;
    for (const auto& some : {takeSome(), other.get()})
        all.insert(some.begin(), some.end());
    EXPECT_EQ(all.size(), 100u);
    EXPECT_EQ(*all.begin(), 8u);
    EXPECT_EQ(*all.rbegin(), 107u);

    dir.write("file", "");
    EXPECT_NE(demo::takeRunNumber(dir("file/state"), dir("file/state/snapshots")).problem, "");
}

/// The presets of a folder on a panel.
class PresetFolder : public testing::Test {
protected:
    PresetFolder() { System::initialize(); }
    ~PresetFolder() override { System::shutdown(); }

    static std::string save(unsigned slot)
    {
        System::instance()->choosePreset(slot);
        ItemPreset& row = System::instance()->getPreset(slot);
        return row.params->saveFunctor(row.accessPresetFunctor(slot), *row.params);
    }
    static std::string textOf(unsigned slot) { return System::instance()->getPreset(slot).params->text; }

    test::TempDir m_dir;
    demo::Presets m_presets{m_dir("")};
};

TEST_F(PresetFolder, thatCannotBeReadIsTold)
{
    m_dir.protect("", 0);
    {
        const test::Unprivileged user;
        m_presets.create();
    }
    m_dir.protect("", 0755);
    EXPECT_FALSE(m_presets.isComplete());
    EXPECT_NE(m_presets.problems().front().find("Permission denied"), std::string::npos);
    EXPECT_EQ(textOf(1), "(desktop.json can't be read: Permission denied)");
}

TEST_F(PresetFolder, tellsOfWhatItDoesNotTakeAndKeepsItAside)
{
    m_dir.write("battery.json", "{ damaged");
    fs::create_symlink("nothing", m_dir("desktop.json"));
    m_dir.write("battery.json.bak", "damaged before");
    m_dir.write("stress.json", R"({"note": "mine", "limits": {"other": {"min": 0, "max": 1}}})");
    m_presets.create();
    EXPECT_EQ(textOf(0), "(battery.json is damaged in line 1)");
    EXPECT_EQ(m_presets.problems().size(), 2u);
    EXPECT_TRUE(m_presets.isRefused("battery"));
    EXPECT_FALSE(m_presets.isRefused("Stress"));
    EXPECT_EQ(save(0), "(saved as battery.json)");
    EXPECT_EQ(save(1), "(desktop.json is a link to nothing)");
    EXPECT_EQ(save(2), "(saved as stress.json)");
    EXPECT_EQ(m_dir.read("battery.json.bak2"), "{ damaged");
    EXPECT_EQ(m_dir.read("battery.json.bak"), "damaged before");
    EXPECT_NE(m_dir.read("battery.json").find("\"max\": 5000.0"), std::string::npos);
    for (const char* kept : {"\"note\": \"mine\"", "\"other\"", "\"max\": 60000.0"})
        EXPECT_NE(m_dir.read("stress.json").find(kept), std::string::npos) << kept;
    EXPECT_FALSE(m_dir.has("stress.json.bak"));
}

} // namespace
