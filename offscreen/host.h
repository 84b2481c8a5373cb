#pragma once

// A host without a window, for tests: draws ImGui frames, moves the mouse and reads back what would be seen.
//
//     offscreen::Host ui;
//     ui.setScene([] { drawThePanel(); });
//     ui.frame();
//     ui.click("Snapshots");
//     EXPECT_TRUE(ui.read().contains("Take snapshot"));
//
// Each gesture draws the frames that ImGui needs to notice it and to show what came of it. Time passes by
// frames alone, so nothing here depends on the speed of the machine.

#include "context.h"
#include "frame_reader.h"

#include <functional>
#include <optional>
#include <utility>

namespace offscreen {

enum EButton { EButtonLeft = 0, EButtonRight = 1 };

/// Owns an ImGui context, which is current whenever this host acts.
class Host {
public:
    explicit Host(ImVec2 displaySize = ImVec2(1280, 1000));

    /// What is drawn between NewFrame and Render. If it throws, the frame is finished, as a careful host
    /// would, the mouse buttons go up, and the exception goes on to the caller of the frame or gesture.
    void setScene(std::function<void()> scene) { m_scene = std::move(scene); }
    void frame();
    void frames(int count);

    /// The last frame as it is seen, read when asked for and valid until the next one is drawn.
    const Frame& read();
    /// What a test names must be in the last frame: otherwise std::runtime_error tells what is there instead.
    const Text& text(std::string_view exact, std::size_t nth = 0);
    Rect window(std::string_view name);

    void moveTo(ImVec2 point);
    void press(EButton button = EButtonLeft) { pressOrRelease(button, true); }
    void release(EButton button = EButtonLeft) { pressOrRelease(button, false); }
    void click(ImVec2 point, EButton button = EButtonLeft); ///< never the second half of a double click
    void rightClick(ImVec2 point) { click(point, EButtonRight); }
    void doubleClick(ImVec2 point);
    void drag(ImVec2 from, ImVec2 to);
    void wheel(float dx, float dy); ///< dy > 0 scrolls up
    /// With or without Shift and Control, and lets it go; turns ImGui's keyboard navigation on.
    void pressKey(ImGuiKey key, bool shift = false, bool control = false);
    /// Presses `key` until it has led to what bears the text; std::runtime_error if it never does.
    void walk(ImGuiKey key, std::string_view text);
    void setFontScale(float scale);

    void moveTo(std::string_view exact, std::size_t nth = 0) { moveTo(text(exact, nth).center()); }
    void click(std::string_view exact, std::size_t nth = 0) { click(text(exact, nth).center()); }
    void rightClick(std::string_view exact, std::size_t nth = 0) { rightClick(text(exact, nth).center()); }
    void doubleClick(std::string_view exact, std::size_t nth = 0) { doubleClick(text(exact, nth).center()); }

    /// The box left of a caption, and the close box of a window.
    void clickBox(std::string_view caption, std::size_t nth = 0) { click(box(caption, nth).center()); }
    bool ticked(std::string_view caption, std::size_t nth = 0);
    void clickClose(std::string_view windowName);

    /// What the last scene had opened in ImGui and not closed when it returned or threw, in words; empty if
    /// nothing. (ImGui itself ends the process when a window is closed over ids or colours that are still
    /// open.)
    const std::string& imbalance() const { return m_imbalance; }

    std::string clipboard();

private:
    ImGuiIO& io() { return m_context.io(); }
    void pressOrRelease(EButton button, bool down);
    void pause();
    Rect box(std::string_view caption, std::size_t nth);
    [[noreturn]] void reportMissing(std::string_view kind, std::string_view name, std::size_t nth = 0);

    Context m_context;
    std::function<void()> m_scene;
    std::optional<Frame> m_read;
    std::string m_imbalance;
    float m_nextFrameTime = Context::kFrameTime;
};

} // namespace offscreen
