#pragma once

#include <statistics/export.h>
#include <statistics/value.h>

#include <functional>
#include <string>
#include <utility>

namespace statistics {

/// How the library reads, prints and judges one sampled value. Built by the host and handed over to
/// `System::createCounter`, which owns it from then on and destroys it with its item.
///
/// `getter` must be callable while the counter lives: an empty one raises `std::bad_function_call` out of the
/// frame update. It runs on the thread that drives the library and may call every operation of the library
/// but `initialize`, `shutdown`, `update` and `draw`; it is called in place, never through a copy. It may
/// remove its counter, but nothing may replace it while it runs, by a pointer to the counter that the host
/// has kept: to sample at no cost beside its own, it runs where it is.
///
/// "No limit" on one side: `FLT_MAX` or infinity above, `-FLT_MAX` or minus infinity below, for values of any
/// kind; the bar then means nothing. A negative lower limit doesn't do for a `UInt` value: -1 reads as
/// 4294967295, and everything is below that.
struct Counter {
    using Getter = std::function<CounterValue()>;

    /// A value without limits.
    explicit Counter(Getter read, std::string printFormat = {})
        : hasLimits(false), getter(std::move(read)), format(std::move(printFormat)), min(0), max(0)
    {
    }

    /// A value whose limits come from the active preset's entry under `key` (preset.h). Both are `Int` 0
    /// until then.
    Counter(Getter read, std::string printFormat, std::string limitPrintFormat, std::string key)
        : hasLimits(true),
          getter(std::move(read)),
          format(std::move(printFormat)),
          min(0),
          max(0),
          limitFormat(std::move(limitPrintFormat)),
          limitKey(std::move(key))
    {
    }

    /// A value with limits of its own, of any kind. Choosing a preset replaces them.
    Counter(CounterValue lower, CounterValue upper, std::function<CounterValue()> read,
            const std::string& printFormat, const std::string& limitPrintFormat)
        : hasLimits(true),
          getter(std::move(read)),
          format(printFormat),
          min(std::move(lower)),
          max(std::move(upper)),
          limitFormat(limitPrintFormat)
    {
    }

    /// Replaces both limits, kind included. `hasLimits` stays as it is.
    void setLimits(CounterValue lower, CounterValue upper)
    {
        min = std::move(lower);
        max = std::move(upper);
    }

    /// True if there is nothing to warn about: no limits, or a value neither below `min` nor above `max`.
    /// Runs the getter, twice if the first comparison passes.
    STATISTICS_EXPORT bool withinLimits();

    bool hasLimits;     ///< draws a bar and takes part in warnings; false once the counter has been removed
    Getter getter;      ///< reads the current value; called twice per sample if there are limits
    std::string format; ///< printf format of the value; empty means the default print
    CounterValue min;   ///< lower limit
    CounterValue max;   ///< upper limit
    std::string limitFormat; ///< printf format of both limits; empty means the default print
    std::string limitKey;    ///< key in a preset's limit map
};

} // namespace statistics
