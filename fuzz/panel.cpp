#include "targets.h"

#include "offscreen/offscreen.h"

#include <statistics/statistics.h>

#include <limits>
#include <memory>
#include <stdexcept>
#include <string>

namespace {

using namespace statistics;

struct Thrown : std::runtime_error {
    Thrown() : std::runtime_error("a functor threw") {}
};

/// Reads the script; past its end everything is zero.
class Script {
public:
    Script(const std::uint8_t* data, std::size_t size) : m_data(data), m_end(data + size) {}

    bool isOver() const { return m_data == m_end; }
    unsigned byte() { return m_data == m_end ? 0u : *m_data++; }
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
    const std::uint8_t* m_data;
    const std::uint8_t* m_end;
};

class Host {
public:
    explicit Host(Script& script) : m_script(script)
    {
        System::initialize();
        ui.setScene([] { System::instance()->draw(); });
    }
    ~Host() { System::shutdown(); }
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    void step()
    {
        m_calls = 0;
        try {
            switch (m_script.byte() % 4) {
            case 0:
                return call();
            case 1:
                return System::instance()->update(m_script.number(), true);
            case 2:
                return moveMouse();
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
        const unsigned what = m_script.byte();
        if (what % 4 == 1)
            call();
        --m_depth;
        if (what == 255)
            throw Thrown();
    }

    CounterValue value()
    {
        functor();
        switch (m_script.byte() % 5) {
        case 0:
            return static_cast<int>(m_script.byte()) - 128;
        case 1:
            return m_script.byte();
        case 2:
            return m_script.text();
        case 3:
            return {};
        default:
            return m_script.number();
        }
    }

    void call()
    {
        ++m_calls;
        System& system = *System::instance();
        const unsigned id = m_script.id();
        switch (m_script.byte() % 16) {
        case 0:
            return system.setPanelOpen(true);
        case 1:
            system.createLabel(m_script.text(), id);
            return;
        case 2:
            system.createCounter(m_script.text(), makeCounter(), m_script.number(), id);
            return;
        case 3:
            system.createTable(
                m_script.text(), [this] { return functor(), m_script.byte(); }, m_script.number(), id);
            return;
        case 4:
            system.createChildrenCounter(m_script.text(), m_script.byte() % 2 ? NO_INDEX : 0, 0.0f,
                                         m_script.text(), id);
            return;
        case 5:
        case 6:
            return changeTable(id);
        case 7:
            return system.removeItem(id);
        case 8:
            return system.updateNode(id);
        case 9:
            return static_cast<void>(system.collectWarnings());
        case 10:
            return addPreset();
        case 11:
            return system.choosePreset(m_script.byte() % 4);
        case 12:
            return system.clearPresets();
        case 13:
            return static_cast<void>(system.getItemIndex(m_script.text()));
        case 14:
            return static_cast<void>(getTableCell(id, m_script.byte(), m_script.byte() % 4));
        default:
            return static_cast<void>(system.getDiffTable());
        }
    }

    std::unique_ptr<Counter> makeCounter()
    {
        const auto read = [this] { return value(); };
        if (m_script.byte() % 2)
            return std::make_unique<Counter>(read, m_script.text(), m_script.text(), m_script.text());
        return std::make_unique<Counter>(m_script.number(), m_script.number(), read, m_script.text(),
                                         m_script.text());
    }

    void changeTable(unsigned id)
    {
        Table* table = System::instance()->getTable(id);
        if (!table)
            return;
        switch (m_script.byte() % 6) {
        case 0:
            return setKeyColumn(id, m_script.byte() % 4);
        case 1:
            return addClipboardAction(id);
        case 2:
            return addRowAction(id, m_script.text(), [this](std::size_t) { functor(); });
        case 3:
            return setDefaultAction(id, [this](std::size_t) { functor(); });
        case 4:
            return table->m_header.clear();
        default:
            table->addColumn(
                m_script.text(), [this](std::size_t) { return value(); }, m_script.number(), m_script.text());
        }
    }

    void addPreset()
    {
        auto params = std::make_unique<PresetSaveLoadParams>();
        params->loadFunctor = params->saveFunctor = [this](LimitMap& limits, PresetSaveLoadParams&) {
            functor();
            limits[m_script.text()] = {m_script.number(), m_script.number()};
            return m_script.text();
        };
        System::instance()->createPreset(m_script.text(), {{"", {0.0f, 1.0f}}}, std::move(params));
    }

    void moveMouse()
    {
        const ImVec2 point(static_cast<float>(m_script.byte() * 4), static_cast<float>(m_script.byte() * 3));
        switch (m_script.byte() % 4) {
        case 0:
            return ui.click(point);
        case 1:
            return ui.rightClick(point);
        case 2:
            return ui.doubleClick(point);
        default:
            return ui.wheel(0.0f, m_script.number() > 0.0f ? 3.0f : -3.0f);
        }
    }

    Script& m_script;
    test::Offscreen ui;
    int m_depth = 0;
    int m_calls = 0;
};

} // namespace

void fuzz::panel(const std::uint8_t* data, std::size_t size)
{
    // The host's mistakes are many here, and each is reported.
    setReportHandler([](const char*) {});
    Script script(data, size);
    {
        Host host(script);
        for (int step = 0; step < 300 && !script.isOver(); ++step)
            host.step();
    }
    setReportHandler(nullptr);
}
