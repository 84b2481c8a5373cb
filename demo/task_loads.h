#pragma once

#include "measure.h"

#include <statistics/value.h>

#include <unordered_map>

namespace demo {

/// The processor load of tasks that come and go, in percent of one processor.
class TaskLoads {
public:
    /// Starts a reading: tasks that aren't asked for until the next one are forgotten.
    void begin()
    {
        m_before.swap(m_now);
        m_now.clear();
        m_when = clockSeconds();
    }

    statistics::CounterValue percent(int task, double processorSeconds)
    {
        const auto known = m_before.find(task);
        Rate rate = known == m_before.end() ? Rate() : known->second;
        const auto share = rate.perSecond(processorSeconds, m_when);
        m_now[task] = rate;
        return toValue(share, 100);
    }

private:
    std::unordered_map<int, Rate> m_before, m_now;
    double m_when = 0; // seconds
};

} // namespace demo
