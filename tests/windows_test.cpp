// What is particular to Windows: line ends, names in UTF-8, two separators, and the system's clipboard.
#include "clipboard.h"
#include "statistics_analyzer.h"
#include "support/files.h"
#include "support/panel.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <clocale>
#include <string>
#include <system_error>
#include <thread>

namespace {

namespace fs = std::filesystem;
using statistics::StatisticsAnalyzer;

/// "Zähler 中😀" as the host tells it, and as the system knows it.
const std::string kName = "Z\xC3\xA4hler \xE4\xB8\xAD\xF0\x9F\x98\x80";
const std::wstring kNativeName = L"Z\u00E4hler \u4E2D\xD83D\xDE00";

std::string bytesOf(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

class Windows : public test::Panel {
protected:
    test::TempDir dir;
};

TEST_F(Windows, linesOfASnapshotEndWithCarriageReturnAndLineFeed)
{
    const StatisticsAnalyzer store(dir("root"), "bench");
    store.writeSnapshot("bench/a.csv", {{"Frame/Time", 16.667f},
                                        {"Frame/Draws", 1250u},
                                        {"Balance", -3},
                                        {"Region", std::string("north")},
                                        {"Idle", {}}});
    const std::string bytes = bytesOf(dir("root/bench/a.csv"));
    EXPECT_EQ(bytes, "sep=\t\r\nCaption\tValue\r\nFrame/Time\t16.667\r\nFrame/Draws\t1250\r\nBalance\t-3\r\n"
                     "Region\tnorth\r\nIdle\t---\r\n");
    const statistics::SnapshotValues values = StatisticsAnalyzer::readSnapshot(dir("root/bench/a.csv"));
    ASSERT_EQ(values.size(), 5u);
    EXPECT_EQ(values[0].second, 16.667f);
    EXPECT_EQ(values[4].first, "Idle");
}

TEST_F(Windows, namesAreUtf8AndEitherSeparatorServesWhateverTheLocale)
{
    int runs = 0;
    for (const char* locale : {"C", "German", ".1251"}) {
        for (const std::string separator : {"/", "\\"}) {
            std::setlocale(LC_ALL, locale);
            const std::string place = "run" + std::to_string(++runs);
            StatisticsAnalyzer store(dir(place) + separator + kName + separator + "deep", kName);
            store.saveSnapshot({{"a", 1}});
            const fs::path folder = fs::path(dir(place)) / kNativeName / "deep" / kNativeName;
            ASSERT_TRUE(fs::is_directory(folder)) << locale << separator;
            EXPECT_EQ(fs::directory_iterator(folder)->path().filename().native().rfind(kNativeName, 0), 0u);

            const StatisticsAnalyzer next(store.root, "next");
            ASSERT_EQ(next.snapshots.size(), 1u);
            EXPECT_EQ(next.snapshots[0].folder, kName);
            EXPECT_EQ(next.snapshots[0].name, store.snapshots[0].name);
            EXPECT_EQ(next.snapshots[0].values.size(), 1u);
            store.clearSnapshots();
            EXPECT_TRUE(fs::is_empty(folder.parent_path()));
            std::setlocale(LC_ALL, "C");
        }
    }
}

TEST_F(Windows, aFolderIsOnePlainNameWithoutDriveOrSeparator)
{
    for (const char* name :
         {"a\\b", "a/b", "\\", "C:", "C:a", "C:\\a", "\\\\server\\share", "..", ".", ".. ", "..."})
        EXPECT_FALSE(statistics::isFolderName(name)) << name;
    EXPECT_TRUE(statistics::isFolderName(kName));
    EXPECT_THROW(StatisticsAnalyzer(dir("root") + "/\xFF", "bench"), std::system_error);
}

/// The bytes that other programs get as plain text.
std::string clipboardBytes()
{
    std::string text = "the clipboard doesn't open";
    if (OpenClipboard(nullptr)) {
        const HANDLE block = GetClipboardData(CF_TEXT);
        const char* bytes = block ? static_cast<const char*>(GlobalLock(block)) : nullptr;
        text = bytes ? bytes : "no text";
        if (bytes)
            GlobalUnlock(block);
        CloseClipboard();
    }
    return text;
}

TEST_F(Windows, copiedRowsReachTheClipboardByteForByte)
{
    const unsigned id = statistics::table("Rows", 0, 0, [] { return std::size_t{2}; });
    for (const char* column : {"Name", "Value"}) {
        system().getTable(id)->addColumn(
            column, [column](std::size_t row) { return column + std::to_string(row) + "\xC3\xA4"; }, 0.3f);
    }
    statistics::addClipboardAction(id);
    show();
    ui.rightClick("Name1\xC3\xA4");
    ui.click("Copy to Clipboard");
    EXPECT_EQ(clipboardBytes(), system().getTable(id)->rowText(1));
    for (const std::string& text :
         {std::string(100000, 'x'), std::string(), std::string("\xFF\x80 \r\n\t.")}) {
        statistics::setClipboardText(text);
        EXPECT_EQ(clipboardBytes(), text);
    }
}

TEST_F(Windows, aClipboardThatAnotherHoldsKeepsItsContents)
{
    statistics::setClipboardText("earlier");
    const HWND other = CreateWindowW(L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    ASSERT_TRUE(OpenClipboard(other));
    std::thread([] { statistics::setClipboardText("later"); }).join();
    CloseClipboard();
    DestroyWindow(other);
    EXPECT_EQ(clipboardBytes(), "earlier");
}

} // namespace
