#pragma once

#include <imgui.h>

namespace demo {

/// A window's place on the display, in pixels.
struct Place {
    ImVec2 position;
    ImVec2 size;
};

/// Where the program's windows stand when they show for the first time.
struct WindowPlaces {
    Place panel;
    Place settings;
    Place warnings;
    Place details;
};

/// A wide display has the panel on the left and the others in a column beside it. On a small one the panel
/// has the whole width, the others stand below, and details in front of the panel.
WindowPlaces placesFor(ImVec2 display);

/// Puts the next window at its place the first time that it shows, or now.
void setNextPlace(const Place& place, bool now);
/// Puts the current window at its place if it isn't wholly on the display.
void keepOnDisplay(const Place& place);

} // namespace demo
