#pragma once

#include <statistics/value.h>

#include <algorithm>
#include <cfloat>
#include <limits>
#include <optional>

namespace demo {

/// Tells when something is due, by the rule by which the library samples: what is read at a counter's period
/// is read in the very frame in which the counter is sampled, just before.
class Period {
public:
    explicit Period(float seconds) : m_seconds(seconds) {}

    bool due(float dt)
    {
        const float passed = dt + m_timer;
        const bool now = passed >= m_seconds;
        m_timer = now ? 0 : passed;
        return now;
    }

private:
    float m_seconds;
    float m_timer = FLT_MAX; ///< the first time is always due
};

/// A measurement times `factor` as a `Decimal`; one that couldn't be made is `Empty`.
inline statistics::CounterValue toValue(std::optional<double> measured, double factor = 1)
{
    if (!measured)
        return {};
    return static_cast<float>(*measured * factor);
}

/// The same for what is counted, as a `UInt`: exact as long as it has 32 bits, then their largest.
inline statistics::CounterValue toCount(std::optional<double> measured)
{
    if (!measured)
        return {};
    return static_cast<unsigned>(
        std::clamp(*measured, 0.0, static_cast<double>(std::numeric_limits<unsigned>::max())));
}

/// How fast a total grows.
class Rate {
public:
    /// Growth per second since the last call; nothing at the first call and after a total that is missing.
    std::optional<double> perSecond(std::optional<double> total, double now)
    {
        std::optional<double> rate;
        if (total && m_total && now > m_when)
            rate = (*total - *m_total) / (now - m_when);
        m_total = total;
        m_when = now;
        return rate;
    }

private:
    std::optional<double> m_total;
    double m_when = 0; ///< seconds
};

/// Seconds of a clock that never steps back.
double clockSeconds();

} // namespace demo
