#pragma once

#include "call_scope.h"
#include "text_lines.h"

#include <statistics/counter.h>
#include <statistics/preset.h>
#include <statistics/table.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace statistics {

/// The kinds of item that the panel can show. An item id holds the kind in its high 16 bits and the slot in
/// the kind's pool in its low 16 bits.
enum class ItemType : unsigned {
    Label = 1,
    Counter = 2,
    Table = 3,
    Preset = 4,
    Checkbox = 5,
    SnapshotControl = 6,
    DiffTable = 7,
    Root = 65535,
};

constexpr unsigned kSlotBits = 16;
constexpr unsigned kMostSlots = 1u << kSlotBits; ///< slots that a pool can hold, as far as item ids reach

constexpr unsigned itemId(ItemType type, unsigned slot)
{
    return (static_cast<unsigned>(type) << kSlotBits) + slot;
}

constexpr unsigned itemSlot(unsigned id)
{
    return id & (kMostSlots - 1);
}

/// An empty format stands for the default print, which is a null format.
inline const char* orNull(const std::string& format)
{
    return format.empty() ? nullptr : format.c_str();
}

/// The limit that a value is outside of.
enum class ECrossed : unsigned char { None, Min, Max };

/// The limits of a counter as texts.
struct LimitTexts {
    LimitTexts() = default;
    LimitTexts(const CounterValue& min, const CounterValue& max, const std::string& format)
    {
        min.print(minText, orNull(format));
        max.print(maxText, orNull(format));
    }

    std::string minText;
    std::string maxText;
};

/// The limits of a counter, and where its last sample lay.
struct ShownLimits {
    explicit ShownLimits(const Counter& counter) : texts(counter.min, counter.max, counter.limitFormat) {}

    LimitTexts texts;
    float weight = 0;                  ///< position of the sample between the limits
    ECrossed crossed = ECrossed::None; ///< `None` while such limits aren't marked
};

/// A counter on the panel: the host's description, and the texts that are drawn every frame. Its period and
/// timer lie in `Render::counterSchedule`.
struct ItemCounter {
    ItemCounter(std::string caption, std::unique_ptr<Counter> description)
        : name(std::move(caption)), counter(std::move(description))
    {
    }

    /// A counter that gets limits later shows them from its next sample on.
    bool showsLimits() const { return counter->hasLimits && limits != INVALID_ID; }

    std::string name;
    std::string valueText; ///< empty until the first sample
    /// In `Render::printedLimits`; none for a counter that has had no limits yet.
    unsigned limits = INVALID_ID;
    CallScope::Owner<Counter> counter;
};

/// A table on the panel: the model, and the cells of the last refresh. Its period and timer lie in
/// `Render::tableSchedule`.
struct ItemTable {
    ItemTable(std::string caption, std::function<std::size_t()> rowCount)
        : name(std::move(caption)), table(std::make_unique<Table>(std::move(rowCount)))
    {
    }

    std::string name;
    CallScope::Owner<Table> table;              ///< hosts hold its address
    std::vector<std::vector<std::string>> rows; ///< texts by view row and column
    bool widthsPending = true;                  ///< the columns' widths are yet to be given to ImGui
    std::size_t menuRow = NO_INDEX;             ///< data row that the context menu was opened on
    RowLines lines;                             ///< of `rows`
};

/// A check box on the panel.
struct ItemCheckbox {
    std::string name;
    bool value = false;
    std::function<void(bool)> onChange; ///< may be empty
    std::string note = {};              ///< what the user reads who points at it; may be empty
};

} // namespace statistics
