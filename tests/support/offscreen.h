// A host without a window, for tests: draws ImGui frames, moves the mouse and reads back what would be seen.
//
//     test::Offscreen ui;
//     ui.setScene([] { drawThePanel(); });
//     ui.click("Snapshots");
//     EXPECT_TRUE(ui.read().contains("Take snapshot"));
//
// Every gesture draws the frames that ImGui needs to notice it and to show what came of it. Time passes only
// by frames, so nothing here depends on the speed of the machine.
#pragma once

#include "frame_reader.h"

#include <functional>
#include <optional>

struct ImGuiContext;

namespace test {

enum EButton { EButtonLeft = 0, EButtonRight = 1 };

// Owns an ImGui context, which is the current one from then on and whenever this host acts; the one that was
// current before comes back at the end. Several hosts may exist; they must end in reverse order.
class Offscreen {
public:
    explicit Offscreen(ImVec2 displaySize = ImVec2(1280, 1000));
    ~Offscreen();
    Offscreen(const Offscreen&) = delete;
    Offscreen& operator=(const Offscreen&) = delete;

    // What is drawn between NewFrame and Render. When it throws, the frame is finished as a careful host
    // would, the mouse buttons go up, and the exception leaves the call that drew the frame.
    void setScene(std::function<void()> scene);
    void frame();
    void frames(int count);

    // The last frame as it is seen, read when first asked for and valid until the next one is drawn.
    const Frame& read();
    // The text in the last frame; one that isn't there throws std::runtime_error, which tells what is there.
    const Text& text(std::string_view exact, std::size_t nth = 0);

    void moveTo(ImVec2 point);
    void press(EButton button = EButtonLeft);
    void release(EButton button = EButtonLeft);
    // A click comes long enough after the last one not to count with it as a double click.
    void click(ImVec2 point, EButton button = EButtonLeft);
    void rightClick(ImVec2 point) { click(point, EButtonRight); }
    void doubleClick(ImVec2 point);
    void drag(ImVec2 from, ImVec2 to);
    void wheel(float dx, float dy); // dy > 0 scrolls up

    // The same at the middle of a text, the nth of its kind.
    void moveTo(std::string_view exact, std::size_t nth = 0) { moveTo(text(exact, nth).center()); }
    void click(std::string_view exact, std::size_t nth = 0) { click(text(exact, nth).center()); }
    void rightClick(std::string_view exact, std::size_t nth = 0) { rightClick(text(exact, nth).center()); }
    void doubleClick(std::string_view exact, std::size_t nth = 0) { doubleClick(text(exact, nth).center()); }

    // Check boxes, by the caption at their right.
    void clickBox(std::string_view caption, std::size_t nth = 0) { click(box(caption, nth).center()); }
    bool ticked(std::string_view caption, std::size_t nth = 0);

    // What the last scene had opened in ImGui and not closed when it returned or threw, to be read by people;
    // empty when all was closed. ImGui itself ends the process when a window closes over ids or colours left.
    const std::string& imbalance() const { return m_imbalance; }
    bool balanced() const { return m_imbalance.empty(); }

    // What was copied last.
    std::string clipboard();

private:
    void pause();
    Rect box(std::string_view caption, std::size_t nth);

    ImGuiContext* m_previous;
    ImGuiContext* m_context;
    std::function<void()> m_scene;
    std::optional<Frame> m_read;
    std::string m_imbalance;
};

} // namespace test
