#pragma once

// A directory of the test's own, and rights to take away.

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

#ifndef _WIN32
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace test {

class TempDir {
public:
    TempDir()
    {
        std::random_device random;
        do {
            m_path = std::filesystem::temp_directory_path() / ("100 %d_" + std::to_string(random()));
        } while (!std::filesystem::create_directory(m_path));
    }
    ~TempDir() { std::filesystem::remove_all(m_path); }

    std::string operator()(const std::string& relative) const { return (m_path / relative).string(); }
    bool has(const std::string& relative) const { return std::filesystem::exists(m_path / relative); }
    void protect(const std::string& relative, int mode) const
    {
        std::filesystem::permissions(m_path / relative, std::filesystem::perms(mode));
    }
    /// With the directories that are missing.
    void write(const std::string& relative, const std::string& bytes) const
    {
        std::filesystem::create_directories((m_path / relative).parent_path());
        std::ofstream(m_path / relative, std::ios::binary) << bytes;
    }
    /// With the line ends of C.
    std::string read(const std::string& relative) const
    {
        std::ifstream file(m_path / relative);
        return {std::istreambuf_iterator<char>(file), {}};
    }

private:
    std::filesystem::path m_path;
};

#ifndef _WIN32
/// Others can read what tests write, whatever the user's shell has.
inline const mode_t kUsersMask = umask(022);

/// Permissions bind root, too, while this lives.
class Unprivileged {
public:
    Unprivileged() { m_done = m_user != 0 || seteuid(65534) == 0; }
    ~Unprivileged() { m_done = seteuid(m_user) == 0; }

private:
    uid_t m_user = geteuid();
    bool m_done;
};
#endif

} // namespace test
