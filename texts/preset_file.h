#pragma once

#include <statistics/preset.h>

#include <string>

namespace texts {

/// Limits as a JSON text: {"name": ..., "limits": {KEY: {"min": ..., "max": ...}, ...}}. Texts come from
/// users' editors and from other programs: anything may stand in them.
struct PresetText {
    std::string name; ///< empty if the text has none
    statistics::LimitMap limits;
    std::string problem; ///< what is wrong with the text; empty for nothing, and then the rest counts
};

PresetText parsePreset(const std::string& text);

/// The preset as a text. What else stands in `old` stays: fields that this program doesn't know, and limits
/// that aren't among these. `old` is a text that has no problem, or empty.
std::string printPreset(const std::string& name, const statistics::LimitMap& limits,
                        const std::string& old = {});

} // namespace texts
