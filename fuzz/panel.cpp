#include "targets.h"

#include "offscreen/host.h"

#include <statistics/statistics.h>

#include <imgui_internal.h>

#include <iterator>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>

namespace {

using namespace statistics;

struct Thrown : std::runtime_error {
    Thrown() : std::runtime_error("a functor threw") {}
};

/// Reads a part of the input. Past its end everything is zero, or it begins again.
class Script {
public:
    enum class End { Zeros, Repeats };

    Script(const std::uint8_t* data, std::size_t size, End end)
        : m_begin(data), m_data(data), m_end(data + size), m_repeats(end == End::Repeats)
    {
    }

    bool isOver() const { return m_data == m_end; }
    unsigned byte()
    {
        if (isOver() && m_repeats)
            m_data = m_begin;
        return isOver() ? 0u : *m_data++;
    }
    unsigned id() { return byte() % 32 == 31 ? byte() * 1000u : byte() % 128; }
    float number()
    {
        static const float odd[] = {0.0f, -1.0f, 1e38f, -1e38f, 1e-30f, 1.0f / 3.0f};
        const unsigned choice = byte();
        if (choice == 255)
            return std::numeric_limits<float>::quiet_NaN();
        if (choice == 254)
            return std::numeric_limits<float>::infinity();
        return choice % 2 ? odd[choice % 6] : static_cast<float>(choice);
    }
    std::string text()
    {
        std::string result;
        for (unsigned length = byte() % 8; length > 0; --length)
            result += static_cast<char>(byte());
        return result;
    }

private:
    const std::uint8_t* m_begin;
    const std::uint8_t* m_data;
    const std::uint8_t* m_end;
    bool m_repeats;
};

class Host {
public:
    /// `answers` is what functors do and give: there are too many of their calls to name each in the steps.
    Host(Script& steps, Script& answers) : m_steps(steps), m_answers(answers)
    {
        System::initialize();
        ui.setScene([] { System::instance()->draw(); });
    }
    ~Host() { System::shutdown(); }
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    void step()
    {
        m_calls = m_depth = 0;
        try {
            switch (m_steps.byte() % 6) {
            case 0:
                return call(m_steps);
            case 1:
                return System::instance()->update(m_steps.number(), true);
            case 2:
                return moveMouse();
            case 3:
                return dragBorder();
            case 4:
                return pressKey();
            default:
                return ui.frame();
            }
        } catch (const Thrown&) {
        }
    }

private:
    static constexpr int kMostCalls = 20; ///< from the functors of one step

    void functor()
    {
        if (m_depth >= 2 || m_calls >= kMostCalls)
            return;
        ++m_depth;
        const unsigned what = m_answers.byte();
        if (what % 4 == 1)
            call(m_answers);
        --m_depth;
        if (what == 255)
            throw Thrown();
    }

    CounterValue value()
    {
        functor();
        switch (m_answers.byte() % 5) {
        case 0:
            return static_cast<int>(m_answers.byte()) - 128;
        case 1:
            return m_answers.byte();
        case 2:
            return m_answers.text();
        case 3:
            return {};
        default:
            return m_answers.number();
        }
    }

    void call(Script& script)
    {
        ++m_calls;
        System& system = *System::instance();
        const unsigned id = script.id();
        switch (script.byte() % 16) {
        case 0:
            return system.setPanelOpen(true);
        case 1:
        case 2:
        case 3:
        case 4:
            return create(id, script);
        case 5:
        case 6:
            return changeTable(id, script);
        case 7:
            return system.removeItem(id);
        case 8:
            return system.updateNode(id);
        case 9:
            return static_cast<void>(system.collectWarnings());
        case 10:
            return addPreset(script);
        case 11:
            return system.choosePreset(script.byte() % 4);
        case 12:
            return system.clearPresets();
        case 13:
            return static_cast<void>(system.getItemIndex(script.text()));
        case 14:
            return static_cast<void>(getTableCell(id, script.byte(), script.byte() % 4));
        default:
            return static_cast<void>(system.getDiffTable());
        }
    }

    // Compilers differ in the order in which they read arguments: what is read here has names.
    void create(unsigned parent, Script& script)
    {
        System& system = *System::instance();
        const std::string name = script.text();
        const float period = script.number();
        switch (script.byte() % 4) {
        case 0:
            system.createLabel(name, parent);
            return;
        case 1:
            system.createCounter(name, makeCounter(script), period, parent);
            return;
        case 2:
            system.createTable(
                name, [this] { return functor(), m_answers.byte() % 24; }, period, parent);
            return;
        default:
            system.createChildrenCounter(name, script.byte() % 2 ? NO_INDEX : 0, period, "%d", parent);
        }
    }

    std::unique_ptr<Counter> makeCounter(Script& script)
    {
        const auto read = [this] { return value(); };
        const std::string format = script.text();
        const std::string limitFormat = script.text();
        if (script.byte() % 2)
            return std::make_unique<Counter>(read, format, limitFormat, script.text());
        const float min = script.number();
        return std::make_unique<Counter>(min, script.number(), read, format, limitFormat);
    }

    void changeTable(unsigned id, Script& script)
    {
        Table* table = System::instance()->getTable(id);
        if (!table)
            return;
        switch (script.byte() % 8) {
        case 0:
            return setKeyColumn(id, script.byte() % 4);
        case 1:
            return addClipboardAction(id);
        case 2:
            return addRowAction(id, script.text(), [this](std::size_t) { functor(); });
        case 3:
            return setDefaultAction(id, [this](std::size_t) { functor(); });
        case 4:
            return table->m_header.clear();
        case 5:
            return repeatColumns(*table, script.byte());
        default:
            const std::string caption = script.text();
            const float width = script.number();
            table->addColumn(
                caption, [this](std::size_t) { return value(); }, width, script.text());
        }
    }

    /// A few columns, or more than fit beside each other however narrow they are.
    static void repeatColumns(Table& table, unsigned times)
    {
        const std::size_t count = times % 16 == 15 ? times * 5 : times % 16;
        if (!table.m_header.empty())
            table.m_header.resize(count, TableColumn(table.m_header.back()));
    }

    void addPreset(Script& script)
    {
        auto params = std::make_unique<PresetSaveLoadParams>();
        params->loadFunctor = params->saveFunctor = [this](LimitMap& limits, PresetSaveLoadParams&) {
            functor();
            limits[m_answers.text()] = {m_answers.number(), m_answers.number()};
            return m_answers.text();
        };
        System::instance()->createPreset(script.text(), {{"", {0.0f, 1.0f}}}, std::move(params));
    }

    void moveMouse()
    {
        const auto x = static_cast<float>(m_steps.byte() * 4);
        const ImVec2 point(x, static_cast<float>(m_steps.byte() * 3));
        switch (m_steps.byte() % 7) {
        case 0:
            return ui.click(point);
        case 1:
            return ui.rightClick(point);
        case 2:
            return ui.doubleClick(point);
        case 3:
            return ui.moveTo(point);
        case 4:
            return ui.press();
        case 5:
            return ui.release();
        default:
            return ui.wheel(0.0f, m_steps.number() > 0.0f ? 3.0f : -3.0f);
        }
    }

    /// A drag from a border of some columns that the panel has shown.
    void dragBorder()
    {
        ui.frame();
        const ImGuiWindow* window = ImGui::FindWindowByName("Statistics");
        if (!window || window->ColumnsStorage.empty())
            return;
        const unsigned chosen = m_steps.byte() % static_cast<unsigned>(window->ColumnsStorage.Size);
        const ImGuiOldColumns& set = window->ColumnsStorage[static_cast<int>(chosen)];
        if (set.Columns.empty())
            return;
        const unsigned border = m_steps.byte() % static_cast<unsigned>(set.Columns.Size);
        const float offset = set.Columns[static_cast<int>(border)].OffsetNorm * (set.OffMaxX - set.OffMinX);
        const ImVec2 from(window->Pos.x + set.OffMinX + offset, set.LineMaxY - 1.0f);
        ui.moveTo(from);
        ui.press();
        ui.moveTo(ImVec2(from.x + static_cast<float>(m_steps.byte()) * 12.0f - 1530.0f, from.y));
        if (m_steps.byte() % 2)
            ui.release();
    }

    void pressKey()
    {
        static const ImGuiKey keys[] = {ImGuiKey_DownArrow,  ImGuiKey_UpArrow,  ImGuiKey_LeftArrow,
                                        ImGuiKey_RightArrow, ImGuiKey_PageDown, ImGuiKey_PageUp,
                                        ImGuiKey_Home,       ImGuiKey_End,      ImGuiKey_Space,
                                        ImGuiKey_Enter,      ImGuiKey_Tab,      ImGuiKey_Escape};
        const unsigned choice = m_steps.byte();
        if (choice % 16 == 15)
            return ui.setFontScale(0.1f + static_cast<float>(choice) * 0.02f);
        ui.pressKey(keys[choice % std::size(keys)]);
    }

    Script& m_steps;
    Script& m_answers;
    offscreen::Host ui;
    int m_depth = 0;
    int m_calls = 0;
};

} // namespace

void fuzz::panel(const std::uint8_t* data, std::size_t size)
{
    // The host's mistakes are many here, and each is reported.
    setReportHandler([](const char*) {});
    const std::size_t steps = size - size / 4;
    Script script(data, steps, Script::End::Zeros);
    Script answers(data + steps, size - steps, Script::End::Repeats);
    {
        Host host(script, answers);
        for (int step = 0; step < 200 && !script.isOver(); ++step)
            host.step();
    }
    setReportHandler(nullptr);
}
