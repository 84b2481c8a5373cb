// Functors of a table that change or remove what is being read and drawn, or throw.
#include "support/table_panel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string_view>

namespace {

using statistics::CounterValue;
using statistics::NO_INDEX;
using test::Lines;

/// A table "Inner" in a group of its own; one of its functors does a deed when its moment has come.
class TableFunctors : public test::TablePanel {
protected:
    /// A functor whose captures must outlive what it does.
    template<class Read>
    auto doing(std::string_view functor, Read read)
    {
        return [this, functor, read, witness = std::string(100, 'w')](auto... row) {
            EXPECT_EQ(system().getTable(inner), model) << "none of a removed table";
            if (functor == moment && wait-- == 0)
                deed();
            EXPECT_EQ(witness.find_first_not_of('w'), std::string::npos);
            return read(row...);
        };
    }

    void build()
    {
        innerRows = 3;
        group = system().createLabel("Group", 0);
        inner = statistics::table("Inner", 0, group, doing("count", [this] { return innerRows; }));
        model = system().getTable(inner);
        for (const char* caption : {"Key", "Other"}) {
            model->addColumn(caption, doing("cell", [](std::size_t row) { return 70u + unsigned(row); }),
                             0.3f);
        }
        model->m_keyColumn = 0;
        model->m_defaultAction = doing("default", [](std::size_t) {});
        model->addAction("Entry", doing("entry", [](std::size_t) {}));
        show();
        if (!ui.read().contains("Key"))
            ui.click("Group");
    }

    /// Or the row of the table that has the slot of the inner one.
    std::string innerHeader()
    {
        ui.frames(2);
        const Lines all = lines();
        const auto found = std::find_if(all.begin(), all.end(), [](auto& line) {
            return line.find("Key") == 0 || line.find("next") == 0;
        });
        return found == all.end() ? "none" : *found;
    }

    // Deeds.
    void createMany() const
    {
        for (int count = 0; count < 150; ++count)
            statistics::table(std::to_string(count), 0, inner, [] { return std::size_t{1}; });
    }
    void dropAll() const
    {
        std::vector<statistics::TableColumn>().swap(model->m_header); // with its memory
        model->m_rowActions.clear();
        model->m_defaultAction = nullptr;
    }
    void makeRoom()
    {
        system().removeItem(group);
        system().updateNode(addTable("Next", nextRows));
    }
    void sort() const
    {
        model->sort(1, false);
        system().updateNode(inner);
    }
    void loseRows()
    {
        innerRows = 1;
        system().updateNode(inner);
    }

    unsigned group = 0, inner = 0;
    std::size_t innerRows = 0;
    test::HostRows nextRows = {{"next", 5}};
    statistics::Table* model = nullptr;
    std::function<void()> deed;
    std::string_view moment;
    int wait = 0;
    Lines gone;
};

TEST_F(TableFunctors, mayDoAnythingAtAnyMoment)
{
    const struct {
        const char* what;
        std::function<void()> deed;
        std::string header; // of the inner table afterwards
    } deeds[] = {
        {"remove it", [this] { system().removeItem(inner); }, "none"},
        {"make room", [this] { makeRoom(); }, "next | 5 B"},
        {"create", [this] { createMany(); }, "Key | Other"},
        {"add columns", [this] { model->m_header.resize(9, model->m_header[1]); }, "Key | Other | Other"},
        {"drop a column", [this] { model->m_header.resize(1); }, "Key"},
        {"drop all", [this] { dropAll(); }, "none"},
        {"sort", [this] { sort(); }, "Key | Other"},
        {"lose rows", [this] { loseRows(); }, "Key | Other"},
        {"throw", [] { throw std::runtime_error("host"); }, "Key | Other"},
    };
    for (const auto& turn : deeds) {
        deed = turn.deed;
        const auto expectWhole = [&](const char* functor, int calls, auto trigger) {
            for (int nth = 0; nth < calls; ++nth) {
                SCOPED_TRACE(std::string(turn.what) + " in " + functor);
                build();
                moment = functor;
                wait = nth;
                try {
                    trigger();
                } catch (const std::runtime_error&) {
                }
                moment = "";
                EXPECT_LT(wait, 0) << "calls that never came";
                EXPECT_EQ(ui.imbalance(), "");
                EXPECT_EQ(innerHeader().substr(0, 19), turn.header);
                EXPECT_TRUE(ui.read().contains("alpha")); // of the other one
                EXPECT_EQ(system().getTable(id), &table);
                system().removeItem(group);
                EXPECT_EQ(schedule.findDue(1, 0), statistics::Schedule::npos) << "nothing is left";
            }
        };
        expectWhole("cell", 6, [] { system().update(0, true); });
        expectWhole("cell", 10, [this] { ui.click("Other"); });
        expectWhole("count", 7, [this] { system().updateNode(inner); });
        expectWhole("count", 8, [this] { ui.click("Key"); });
        expectWhole("cell", 2, [this] { model->rowText(1); });
        expectWhole("cell", 3, [this] { model->sumColumn(0); });
        expectWhole("default", 1, [this] { ui.doubleClick("71"); });
        expectWhole("entry", 1, [this] {
            ui.rightClick("71");
            ui.click("Entry");
        });
    }
}

TEST_F(TableFunctors, runInPlaceAndKeepTheirState)
{
    const auto held = std::make_shared<int>();
    test::Indices calls;
    table.m_header[1].getter = [n = 0, held](std::size_t) mutable { return ++n; };
    table.addAction("Count", [&calls, n = 0u](std::size_t) mutable { calls.push_back(++n); });
    table.m_defaultAction = table.m_rowActions[0].action;
    EXPECT_EQ(table.getCell(1, 0), "1 B");
    EXPECT_EQ(table.getCell(1, 0), "2 B");
    sample();
    EXPECT_EQ(item.rows[2][1], "5 B");
    for (int count = 0; count < 2; ++count) {
        table.runAction(0, 0);
        table.runDefaultAction(0);
    }
    EXPECT_EQ(calls, (test::Indices{1, 1, 2, 2}));
    EXPECT_EQ(held.use_count(), 2);

    const auto copy = table.m_header[1].getter; // has a state of its own from here on
    EXPECT_EQ(copy(0), table.m_header[1].getter(0));
    EXPECT_EQ(copy(0), table.m_header[1].getter(0));
}

TEST_F(TableFunctors, mayReplaceThemselvesAndLiveOnUntilTheCallReturns)
{
    const auto goes = [this](const char* name, auto replace) {
        return [this, replace, text = std::string(100, 'x'),
                guard = std::shared_ptr<void>(nullptr, [this, name](void*) { gone.emplace_back(name); })](
                   auto... row) {
            replace();
            EXPECT_EQ(text.size() + gone.size(), 100u);
            return CounterValue(static_cast<int>(text.size()) + static_cast<int>(sizeof...(row)));
        };
    };
    table.m_header[0].getter = goes("getter", [this] { table.m_header.clear(); });
    table.m_rowCount = [count = goes("count", [this] { table.m_rowCount = [] { return 2u; }; })]() mutable {
        return std::size_t(count().toUInt() / 50);
    };
    system().updateNode(id);
    EXPECT_EQ(gone, (Lines{"count", "getter"}));
    EXPECT_EQ(table.m_rowCount(), 2u);

    statistics::addClipboardAction(id);
    std::function<void()> replaceCount = [&] {
        table.m_rowCount = [&, text = std::string(100, 'x')] {
            replaceCount();
            return text.size() / 50;
        };
    };
    replaceCount();
    table.runAction(0, 0);
    EXPECT_EQ(ui.clipboard(), "") << "of no columns";
}

TEST_F(TableFunctors, areFoundAfreshInTheirColumnsAtEveryUse)
{
    sample();
    int old = 0;
    const auto readOnce = [&](std::size_t) {
        table.m_header[1].getter = [](std::size_t row) { return static_cast<int>(row); };
        ++old;
        return 5;
    };
    const auto replaceOther = [&, read = table.m_header[0].getter](std::size_t row) {
        table.m_header[1].getter = [](std::size_t) { return 7; };
        return read(row);
    };
    table.m_header[0].getter = replaceOther;
    system().updateNode(id);
    EXPECT_EQ(item.rows[0], (Lines{"alpha", "7 B"}));
    table.m_header[1].getter = readOnce;
    EXPECT_EQ(table.sumColumn(1), 5 + 1 + 2);
    table.m_header[1].getter = readOnce;
    table.sort(1, false);
    EXPECT_EQ(old, 2);
}

TEST_F(TableFunctors, thatAreMissingAreFoundOutWhateverBecomesOfTheirColumns)
{
    const auto grow = [this](auto...) {
        table.m_header.resize(table.m_header.size() + 20, table.m_header[1]);
        return rows.size();
    };
    table.m_header[0].getter = [grow](std::size_t) { return unsigned(grow()); };
    sample();
    EXPECT_EQ(item.rows[0].size(), 2u) << "columns of the sort are for the next refresh";
    table.m_header[1].getter = nullptr;
    EXPECT_THROW(sample(), std::bad_function_call);
    table.m_rowCount = grow;
    EXPECT_THROW(table.sort(1, true), std::bad_function_call);
    EXPECT_THROW(table.sumColumn(1), std::bad_function_call);
}

TEST_F(TableFunctors, readTheirOwnTableWithoutSortingItInsideASort)
{
    bool reading = false;
    std::size_t missing = 0;
    test::HostRows others = {{"uno", 5}, {"dos", 6}};
    statistics::Table& other = *system().getTable(addTable("Others", others));
    other.m_header[0].getter = [&](std::size_t row) {
        missing += table.getSortedCell(1, 0).empty() ? 1 : 0;
        return CounterValue(others.at(row).name);
    };
    table.m_header[0].getter = [&](std::size_t row) {
        if (!reading)
            other.sort(0, true);
        for (std::size_t view = 0; !reading && view < rows.size(); ++view) {
            reading = true;
            missing += table.getSortedCell(1, view).empty() ? 1 : 0;
            reading = false;
            missing += table.dataRow(view) == NO_INDEX ? 1 : 0;
        }
        return CounterValue(rows.at(row).name);
    };
    sample();
    EXPECT_EQ(table.m_order, (test::Indices{2, 0, 1}));
    table.sort(0, false);
    EXPECT_EQ(missing, 0u);
    table.m_rowCount = [this, flicker = 0]() mutable { return rows.size() - std::size_t(++flicker % 2); };
    for (int turn = 0; turn < 3; ++turn)
        EXPECT_NO_THROW(system().updateNode(id));
}

TEST_F(TableFunctors, thatRefreshTheirOwnTableLeaveNoRowTooHigh)
{
    sample();
    int calls = 0;
    table.m_header[0].getter = [&](std::size_t) {
        const int call = ++calls;
        if (call == 1)
            system().updateNode(id);
        return CounterValue(call == 1 || call > 4 ? "one" : "two\nlines");
    };
    system().updateNode(id);
    EXPECT_EQ(item.lines.extraBefore(3), 0u);
}

TEST_F(TableFunctors, getNoRowThatHasGone)
{
    table.m_header[1].getter = [this](std::size_t row) {
        const CounterValue value = rows.at(row).size; // throws for a row that has gone
        rows.pop_back();
        return value;
    };
    table.m_header[0].getter = table.m_header[1].getter;
    table.m_defaultAction = [this](std::size_t row) { rows.at(row); };
    statistics::addClipboardAction(id);
    const std::function<void()> uses[] = {
        [this] { table.sort(1, true); },        [this] { system().updateNode(id); },
        [this] { table.runDefaultAction(63); }, [this] { table.m_rowActions[0].action(63); },
        [this] { table.getSortedCell(1, 63); },
    };
    for (const auto& use : uses) {
        rows.resize(64, {"more", 5});
        EXPECT_NO_THROW(use());
    }
}

TEST_F(TableFunctors, areSortedOnceARefreshHoweverTheCountChangesMeanwhile)
{
    rows.resize(200, {"more", 5});
    table.m_rowCount = [this, flicker = 0]() mutable { return rows.size() - std::size_t(++flicker % 2); };
    for (int turn = 0; turn < 4; ++turn) {
        reads = 0;
        system().updateNode(id);
        EXPECT_LT(reads, 2 * 200 + 2 * 200 * 8u) << "the cells and one sort";
        EXPECT_LE(item.rows.size() - table.m_order.size() + 1, 2u);
    }
}

TEST_F(TableFunctors, ofACopiedClipboardEntryActOnItsOwnTableWhileThatLives)
{
    test::HostRows others = {{"uno", 5}, {"dos", 6}};
    const unsigned other = addTable("Others", others);
    statistics::addClipboardAction(other);
    show();
    table.m_rowActions = system().getTable(other)->m_rowActions;
    table.runAction(0, 1); // of data row 0
    EXPECT_EQ(ui.clipboard(), "uno\t5 B");
    table.runAction(0, 0); // of data row 2, which the other hasn't got
    ImGui::SetCurrentContext(nullptr);
    table.runAction(0, 1); // to no clipboard
    ui.frame();
    system().getTable(other)->m_header[1].getter = [&](std::size_t) {
        system().removeItem(other);
        return 7;
    };
    table.runAction(0, 1);
    table.runAction(0, 1);
    const auto entry = table.m_rowActions[0].action;
    statistics::System::shutdown();
    entry(0);
    EXPECT_EQ(ui.clipboard(), "uno\t5 B");
}

TEST_F(TableFunctors, thatThrowLeaveNoOldCellsAndWaitForTheirPeriod)
{
    schedule.start(0, 10);
    const Lines fresh = {"Name | Size", "alpha | 20 B", "beta | 30 B", "gamma | 10 B"};
    for (std::size_t whole = 0; whole < 3; ++whole) {
        table.m_header[1].getter = [this](std::size_t row) { return rows[row].size; };
        system().updateNode(id);
        table.m_header[1].getter = [this, whole](std::size_t row) {
            if (row == table.m_order[whole])
                throw std::runtime_error("host");
            return rows[row].size * 10;
        };
        EXPECT_THROW(system().update(10, true), std::runtime_error);
        EXPECT_NO_THROW(system().update(9, true));
        ui.frames(2);
        Lines read(fresh.begin(), fresh.begin() + 1 + static_cast<std::ptrdiff_t>(whole));
        read.push_back(rows[table.m_order[whole]].name);
        EXPECT_EQ(lines(), read);
    }
    EXPECT_THROW(table.sort(1, false), std::runtime_error);
    EXPECT_EQ(table.m_sortColumn, 1u);
    EXPECT_FALSE(table.m_sortAscending);
    EXPECT_EQ(table.m_order, (test::Indices{2, 0, 1})) << "as the panel shows them";
}

} // namespace
