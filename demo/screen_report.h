#pragma once

#include "measure.h"

#include <string>

namespace demo {

/// Tells scripts what stands where on the screen, some times per second: one line for each text of the last
/// frame, with the place of its middle (pixels from the left and from the top), its window's name and the
/// text, separated by tabs. The file is replaced as a whole.
class ScreenReport {
public:
    /// Nothing is told if `file` is empty.
    explicit ScreenReport(std::string file) : m_file(std::move(file)) {}

    /// To be called between the end of the ImGui frame and the beginning of the next.
    void tell(float dt);

private:
    std::string m_file;
    Period m_period{0.1f};
};

} // namespace demo
