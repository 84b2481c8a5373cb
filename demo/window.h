#pragma once

#include <functional>

struct GLFWwindow;

namespace demo {

/// The window of the operating system with Dear ImGui in it, drawn by OpenGL 3.
class Window {
public:
    /// Throws `std::runtime_error` with a text for the user if there is no display or no OpenGL.
    /// `layoutFile` keeps the places of ImGui's windows from run to run; empty for nowhere.
    explicit Window(const char* layoutFile);
    ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    /// By its close box, or with its display.
    bool closed() const;
    /// Handles what the user did. `onKey` gets the GLFW codes of the keys pressed outside of text fields.
    void pollEvents(const std::function<void(int key)>& onKey);

    void beginFrame();
    void endFrame();
    /// Gives the frame to the graphics card.
    void render();
    /// Brings the frame to the screen; waits for the display if the driver does.
    void present();

private:
    void createWindow();
    void createGui(const char* layoutFile);

    GLFWwindow* m_window = nullptr;
    bool m_displayLost = false;
    const std::function<void(int)>* m_onKey = nullptr; ///< while events are polled
};

} // namespace demo
