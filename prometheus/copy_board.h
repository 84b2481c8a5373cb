#pragma once

#include "counter_copy.h"

#include <array>
#include <cstddef>
#include <mutex>

namespace statistics::prometheus_export {

/// Three copies between one writer and one reader: of them all, one is the latest, one may be in the reader's
/// hands, and so one is always free for the writer. The lock covers an index, never a copy.
class CopyBoard {
public:
    /// The copy that neither is published nor being read.
    CounterCopy& forWriting()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_writing = 0;
        while (m_writing == m_latest || m_writing == m_reading)
            ++m_writing;
        return m_copies[m_writing];
    }
    /// Makes the copy that was last given for writing the latest.
    void publish()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_copies[m_writing].number = ++m_count;
        m_latest = m_writing;
    }

    /// Holds the latest copy while it lives. One at a time.
    class [[nodiscard]] Reading {
    public:
        explicit Reading(CopyBoard& board) : m_board(board)
        {
            const std::lock_guard<std::mutex> lock(m_board.m_mutex);
            m_board.m_reading = m_board.m_latest;
        }
        ~Reading()
        {
            const std::lock_guard<std::mutex> lock(m_board.m_mutex);
            m_board.m_reading = kNone;
        }
        Reading(const Reading&) = delete;
        Reading& operator=(const Reading&) = delete;

        const CounterCopy& operator*() const { return m_board.m_copies[m_board.m_reading]; }

    private:
        CopyBoard& m_board;
    };

private:
    static constexpr std::size_t kNone = 3;

    std::array<CounterCopy, kNone> m_copies;
    std::size_t m_latest = 0;
    std::size_t m_writing = 1;
    std::size_t m_reading = kNone;
    std::uint64_t m_count = 0;
    std::mutex m_mutex;
};

} // namespace statistics::prometheus_export
