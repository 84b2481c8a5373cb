#pragma once

#include <string>

namespace demo {

/// What the host tells its user beside the panel.
struct Notices {
    std::string message; ///< what came of the last deed

    /// A small window about one row; open while it has a title.
    struct Details {
        std::string title;
        std::string text; ///< lines of a name, a colon and a value
    } details;
};

} // namespace demo
