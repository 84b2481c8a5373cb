#pragma once

#include <chrono>
#include <cstddef>

namespace compare {

/// A line on the terminal that tells how far the reading is, once it has taken a second. It goes away with
/// the object. Where stderr is no terminal, nothing is shown.
class Progress {
public:
    explicit Progress(std::size_t files);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void beginFile() { ++m_file; }
    /// One value more.
    void step()
    {
        if ((++m_values & kMask) == 0)
            look();
    }

private:
    static constexpr std::size_t kMask = 4095; ///< the clock is looked at once in so many values

    void look();

    std::size_t m_files;
    std::size_t m_file = 0;
    std::size_t m_values = 0;
    std::chrono::steady_clock::time_point m_due;
    bool m_isShown = false;
    bool m_isTerminal;
};

} // namespace compare
