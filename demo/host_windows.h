#pragma once

#include "app.h"
#include "window_places.h"

#include <list>
#include <string>

namespace demo {

/// What the program draws besides the library's panel: the scene, and windows for its settings, for warnings,
/// and for the details of a row.
class HostWindows {
public:
    /// Gives `app` the system's clipboard.
    explicit HostWindows(App& app);

    /// Draws everything, the panel included, in an ImGui frame.
    void draw(float dt);
    void onKey(int key);

private:
    bool begin(const char* title, const Place& place, bool* open = nullptr) const;
    void drawScene() const;
    void drawSettings();
    void drawWork();
    void drawFolders();
    void drawPanel();
    void drawWarnings(float dt);
    void drawDetails();

    App& m_app;
    ImVec2 m_display{}; ///< its size when last drawn
    bool m_displayChanged = false;
    bool m_displayResized = false; ///< changed while the windows stood on it
    WindowPlaces m_places{};
    std::list<std::string> m_warnings; ///< as last collected
    Period m_warningPeriod{0.25f};
};

} // namespace demo
