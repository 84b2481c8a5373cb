#include "progress.h"

#include "terminal.h"

#include <cstdio>

namespace compare {

using Clock = std::chrono::steady_clock;

namespace {

constexpr std::chrono::seconds kPatience{1};
constexpr std::chrono::milliseconds kPeriod{200};
constexpr const char* kErase = "\r\033[K";

} // namespace

Progress::Progress(std::size_t files)
    : m_files(files), m_due(Clock::now() + kPatience), m_isTerminal(isTerminal(stderr))
{
}

Progress::~Progress()
{
    if (m_isShown)
        std::fputs(kErase, stderr);
}

void Progress::look()
{
    const Clock::time_point now = Clock::now();
    if (!m_isTerminal || now < m_due)
        return;
    m_due = now + kPeriod;
    m_isShown = true;
    std::fprintf(stderr, "%sreading snapshot %zu of %zu, %zu values so far", kErase, m_file, m_files,
                 m_values);
    std::fflush(stderr);
}

} // namespace compare
