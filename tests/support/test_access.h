#pragma once

// What tests reach of the one System that no host can: its parts, and the operations behind the buttons.

#include "system_data.h"

namespace statistics {

struct TestAccess {
    static System::Data& data() { return *System::instance()->m_data; }
    static Tree& tree() { return data().tree; }
    static Render& render() { return data().render; }
    static std::deque<LimitMap>& limitPresets() { return System::instance()->limitPresets; }
    static void takeSnapshot() { System::instance()->takeSnapshot(); }
    static void updateSnapshots() { System::instance()->updateSnapshots(); }
    static void clearSnapshots() { System::instance()->clearSnapshots(); }
};

} // namespace statistics
