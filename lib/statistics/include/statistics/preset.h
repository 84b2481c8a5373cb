#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>

namespace statistics {

/// The stored limits of one counter.
struct Limit {
    float min;
    float max;
};

/// The limits of a preset, by `Counter::limitKey`.
using LimitMap = std::unordered_map<std::string, Limit>;

/// The host's side of a preset's row: a text and up to three buttons. Filled by the host, owned by the
/// library once handed to `System::createPreset`.
///
/// Each functor gets a limit map and these parameters by reference, valid for the call, and returns the new
/// `text`. It is called in place, never through a copy, and may call every operation of the library but
/// `initialize`, `shutdown`, `update` and `draw`. Where it clears the presets, or puts other parameters in
/// place of its own row's (`System::getPreset`; built before the old ones go: they are told by their
/// address), its result is dropped. Cleared limits and parameters live until the library's call returns;
/// parameters that the host replaces itself go at once.
struct PresetSaveLoadParams {
    using Functor = std::function<std::string(LimitMap& limits, PresetSaveLoadParams& params)>;

    std::string text;      ///< shown beside the check box; replaced by the result of each functor that runs
    Functor loadFunctor;   ///< "Load": fills this row's limits; counters take them when the preset is chosen
    Functor saveFunctor;   ///< "Save": stores the active preset's limits
    Functor saveAsFunctor; ///< "Save As": stores the active preset's limits elsewhere
};

/// A preset's row on the panel. The library binds the three functors to its `System`.
struct ItemPreset {
    std::string name;  ///< caption of the check box
    std::size_t index; ///< position among the presets, in order of creation
    std::function<std::size_t()> getSelectedFunctor;
    std::function<void(std::size_t)> selectFunctor;
    std::function<LimitMap&(std::size_t)> accessPresetFunctor; ///< the map is valid until presets are cleared
    std::unique_ptr<PresetSaveLoadParams> params;              ///< may be null: a row with only its check box
};

} // namespace statistics
