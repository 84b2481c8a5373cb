#include "files.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <system_error>
#include <unistd.h>

namespace demo {

namespace fs = std::filesystem;

namespace {

constexpr const char* kFolderName = "statistics-demo";

struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

using File = std::unique_ptr<std::FILE, Closer>;

fs::path homeFolder()
{
    const char* const home = std::getenv("HOME");
    return home && *home ? home : ".";
}

std::string lastError(const fs::path& path)
{
    return path.string() + ": " + std::strerror(errno);
}

/// What went wrong, empty for nothing. Closing counts: a full disk may show only then.
std::string writeNew(const fs::path& path, const std::string& text)
{
    File file(std::fopen(path.c_str(), "wb"));
    if (!file)
        return lastError(path);
    if (std::fwrite(text.data(), 1, text.size(), file.get()) != text.size())
        return lastError(path);
    if (std::fclose(file.release()) != 0)
        return lastError(path);
    return {};
}

} // namespace

std::optional<std::string> readText(const std::string& path)
{
    const File file(std::fopen(path.c_str(), "rb"));
    if (!file)
        return std::nullopt;
    // Files under /proc tell no size.
    std::string text;
    char block[16384];
    while (const std::size_t count = std::fread(block, 1, sizeof(block), file.get()))
        text.append(block, count);
    if (std::ferror(file.get()))
        return std::nullopt;
    return text;
}

std::string replaceText(const fs::path& path, const std::string& text)
{
    std::error_code error;
    fs::create_directories(path.parent_path(), error);
    if (error)
        return path.parent_path().string() + ": " + error.message();

    // Two demos may write the same file.
    const fs::path fresh = path.string() + ".new" + std::to_string(getpid());
    std::string problem = writeNew(fresh, text);
    if (problem.empty()) {
        fs::rename(fresh, path, error);
        if (error)
            problem = path.string() + ": " + error.message();
    }
    if (!problem.empty())
        fs::remove(fresh, error);
    return problem;
}

std::vector<std::string> entriesOf(const std::string& folder)
{
    std::vector<std::string> names;
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error))
        names.push_back(entry->path().filename().string());
    return names;
}

std::vector<int> numbersIn(const std::string& folder)
{
    std::vector<int> numbers;
    for (const std::string& name : entriesOf(folder)) {
        int number = 0;
        const char* const end = name.data() + name.size();
        const auto result = std::from_chars(name.data(), end, number);
        if (result.ec == std::errc() && result.ptr == end)
            numbers.push_back(number);
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

fs::path userFolder(const std::string& chosen, const char* variable, const char* fallback)
{
    if (!chosen.empty())
        return chosen;
    // A relative path in these variables is to be ignored.
    if (const char* base = std::getenv(variable); base && *base == '/')
        return fs::path(base) / kFolderName;
    return homeFolder() / fallback / kFolderName;
}

std::string shortPath(const fs::path& path)
{
    const fs::path inHome = path.lexically_relative(homeFolder());
    return inHome.empty() || *inHome.begin() == ".." ? path.string() : (fs::path("~") / inHome).string();
}

} // namespace demo
