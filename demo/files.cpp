#include "files.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace demo {

namespace fs = std::filesystem;

namespace {

class Descriptor {
public:
    explicit Descriptor(int number) : m_number(number) {}
    ~Descriptor()
    {
        if (m_number >= 0)
            close(m_number);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int number() const { return m_number; }

private:
    int m_number; ///< negative for none
};

/// Up to one block more than `most` bytes; false after an error, which `errno` tells.
bool readAll(int file, std::size_t most, std::string& text)
{
    // Files under /proc tell no size.
    char block[16384];
    while (text.size() <= most) {
        const ssize_t count = read(file, block, sizeof(block));
        if (count < 0 && errno != EINTR)
            return false;
        if (count == 0)
            return true;
        text.append(block, static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
    return true;
}

std::string tooLarge(std::size_t most)
{
    return "is larger than " + std::to_string(most >> 10) + " KiB";
}

std::string cantBeRead()
{
    return std::string("can't be read: ") + std::strerror(errno);
}

/// What kind of file it is, before it is opened: to open a device may do something.
FileText look(const fs::path& path)
{
    FileText file;
    struct stat status {};
    struct stat link {};
    if (stat(path.c_str(), &status) == 0)
        file.isRegular = S_ISREG(status.st_mode);
    else if (errno == ENOENT && lstat(path.c_str(), &link) == 0)
        file.problem = "is a link to nothing";
    else
        file.problem = cantBeRead();
    if (file.problem.empty() && !file.isRegular)
        file.problem = "is no regular file";
    return file;
}

} // namespace

std::optional<std::string> readText(const std::string& path)
{
    const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    std::string text;
    if (file.number() < 0 || !readAll(file.number(), text.max_size() - 1, text))
        return std::nullopt;
    return text;
}

FileText readRegularFile(const fs::path& path, std::size_t most)
{
    FileText file = look(path);
    if (!file.problem.empty())
        return file;
    // Another file may have come in its place since: the flag keeps a pipe from holding us.
    const Descriptor opened(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (opened.number() < 0 || !readAll(opened.number(), most, file.text))
        file.problem = cantBeRead();
    else if (file.text.size() > most)
        file.problem = tooLarge(most);
    return file;
}

bool isThere(const fs::path& path)
{
    struct stat status {};
    return lstat(path.c_str(), &status) == 0 || (errno != ENOENT && errno != ENOTDIR);
}

std::vector<std::string> entriesOf(const fs::path& folder, std::string* problem)
{
    std::vector<std::string> names;
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error))
        names.push_back(entry->path().filename().string());
    if (problem && error && error != std::errc::no_such_file_or_directory)
        *problem = folder.string() + ": " + error.message();
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

} // namespace demo
