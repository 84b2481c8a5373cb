#pragma once

#include "measure.h"
#include "options.h"

namespace demo {

/// How long a run may take by the command line: "--frames" and "--seconds", from its making on.
class Bounds {
public:
    explicit Bounds(const Options& options) : m_options(options) {}

    /// Whether another frame may begin; counts it.
    bool admit()
    {
        if (m_options.frames && m_frames >= *m_options.frames)
            return false;
        ++m_frames;
        return !m_options.seconds || passed() < *m_options.seconds;
    }

    double passed() const { return clockSeconds() - m_start; } ///< seconds

private:
    const Options& m_options;
    double m_start = clockSeconds();
    unsigned m_frames = 0;
};

} // namespace demo
