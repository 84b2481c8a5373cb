#pragma once

#include <statistics/preset.h>

#include <string>

namespace demo {

/// Limits as a JSON text: {"name": ..., "limits": {KEY: {"min": ..., "max": ...}, ...}}.
struct PresetText {
    std::string name; ///< empty if the text has none
    statistics::LimitMap limits;
    std::string problem; ///< what is wrong with the text; empty for nothing, and then the rest counts
};

PresetText parsePreset(const std::string& text);
std::string printPreset(const std::string& name, const statistics::LimitMap& limits);

} // namespace demo
