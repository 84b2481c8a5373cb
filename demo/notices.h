#pragma once

#include <functional>
#include <string>

namespace demo {

/// What the host tells its user beside the panel.
struct Notices {
    std::string message; ///< what came of the last deed

    /// A small window about one row; open while it has a title.
    struct Details {
        std::string title;
        std::string text; ///< lines of a name, a colon and a value; empty if the row's thing is gone
    } details;

    /// Puts a text on the system's clipboard. Actions of rows run it: it is set where there are clicks.
    std::function<void(const std::string& text)> copy;
};

} // namespace demo
