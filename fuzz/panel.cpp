#include "script.h"
#include "surroundings.h"
#include "targets.h"
#include "user.h"

#include "offscreen/host.h"
#include "support/counting.h"

#include <statistics/statistics.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>

namespace {

using namespace statistics;
using fuzz::Script;
using test::counting;

void require(bool holds)
{
    if (!holds)
        std::abort();
}

struct Thrown : std::runtime_error {
    Thrown() : std::runtime_error("a functor threw") {}
};

class Host {
public:
    /// `answers` is what functors do and give: there are too many of their calls to name each in the steps.
    Host(Script& steps, Script& answers) : m_steps(steps), m_answers(answers)
    {
        System::initialize();
        m_ui.setScene([this] { m_surroundings.draw(); });
    }
    ~Host() { System::shutdown(); }
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    void step()
    {
        m_calls = m_depth = 0;
        try {
            switch (m_steps.byte() % 8) {
            case 0:
            case 1:
                return call(m_steps);
            case 2:
                return System::instance()->update(m_steps.number(), true);
            case 3:
                return m_ui.frame();
            case 4:
                return m_surroundings.change(m_steps);
            default:
                return m_user.act();
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

    /// Another number of rows at each call.
    std::size_t countRows()
    {
        functor();
        return m_rows = m_answers.byte() % 24;
    }

    /// Only on rows that there are.
    void act(std::size_t row)
    {
        require(row < m_rows);
        functor();
    }

    // NOLINTNEXTLINE(readability-function-size): a line for each operation
    void call(Script& script)
    {
        ++m_calls;
        System& system = *System::instance();
        const unsigned id = script.id();
        switch (script.byte() % 20) {
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
        case 15:
            return static_cast<void>(system.getDiffTable());
        case 16:
            return changeOptions(script);
        case 17:
            return system.setFilter(script.text());
        case 18:
            return system.openNode(id, script.byte() % 2 == 0);
        default:
            return readCounters(id, script.byte() % 2 == 0);
        }
    }

    static void changeOptions(Script& script)
    {
        static constexpr std::size_t kHistories[] = {0, 1, 2, 7, 300};
        Options options;
        options.history = kHistories[script.byte() % 5];
        const unsigned on = script.byte();
        options.filter = (on & 1u) != 0;
        options.markOutside = (on & 2u) != 0;
        options.sortArrows = (on & 4u) != 0;
        options.sortSnapshots = (on & 8u) != 0;
        options.rowKeys = (on & 16u) != 0;
        options.background = script.number();
        options.compareTolerance = script.number();
        System::instance()->setOptions(options);
        require(System::instance()->options().background >= 0);
        require(System::instance()->options().background <= 1);
    }

    void readCounters(unsigned id, bool withPaths)
    {
        System& system = *System::instance();
        const auto visit = [&](const CounterReading& reading) {
            require(withPaths || reading.path.empty());
            functor();
        };
        system.forEachCounter(visit, withPaths);
        require(system.history(id).samples.size() <= system.options().history);
    }

    /// Compilers differ in the order in which they read arguments: what is read here has names.
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
            system.createTable(name, counting([this] { return countRows(); }), period, parent);
            return;
        default:
            system.createChildrenCounter(name, script.byte() % 2 ? NO_INDEX : 0, period, "%d", parent);
        }
    }

    std::unique_ptr<Counter> makeCounter(Script& script)
    {
        const auto read = counting([this] { return value(); });
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
            return addRowAction(id, script.text(), counting([this](std::size_t row) { act(row); }));
        case 3:
            return setDefaultAction(id, counting([this](std::size_t row) { act(row); }));
        case 4:
            return table->m_header.clear();
        case 5:
            return repeatColumns(*table, script.byte());
        default:
            return addColumn(*table, script);
        }
    }

    void addColumn(Table& table, Script& script)
    {
        const std::string caption = script.text();
        const float width = script.number();
        table.addColumn(caption, counting([this](std::size_t) { return value(); }), width, script.text());
    }

    /// A few columns, or more than fit beside each other however narrow they are.
    void repeatColumns(Table& table, unsigned times)
    {
        const std::size_t count = times % 16 == 15 ? times * 5 : times % 16;
        if (table.m_header.empty())
            return;
        table.m_header.resize(std::min(count, table.m_header.size()));
        while (table.m_header.size() < count) {
            table.m_header.emplace_back(table.m_header.front());
            table.m_header.back().getter = counting([this](std::size_t) { return value(); });
        }
    }

    void addPreset(Script& script)
    {
        auto params = std::make_unique<PresetSaveLoadParams>();
        const auto change = [this](LimitMap& limits, PresetSaveLoadParams&) {
            functor();
            limits[m_answers.text()] = {m_answers.number(), m_answers.number()};
            return m_answers.text();
        };
        params->loadFunctor = counting(change);
        params->saveFunctor = counting(change);
        System::instance()->createPreset(script.text(), {{"", {0.0f, 1.0f}}}, std::move(params));
    }

    Script& m_steps;
    Script& m_answers;
    offscreen::Host m_ui;
    fuzz::User m_user{m_steps, m_ui};
    fuzz::Surroundings m_surroundings{[] { System::instance()->draw(); }};
    std::size_t m_rows = 0; ///< of the table that was asked last
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
