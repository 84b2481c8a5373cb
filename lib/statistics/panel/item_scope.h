#pragma once

#include "items.h"
#include "widgets.h"

namespace statistics {

/// The identity of an item's widgets, for items that have no name of their own or may share it: kind and
/// slot.
[[nodiscard]] inline widgets::IdScope itemScope(ItemType type, unsigned slot)
{
    return widgets::IdScope(static_cast<int>(itemId(type, slot)));
}

} // namespace statistics
