// Functors of a table that change or remove what is being read and drawn, or throw.
#include "support/table_panel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <string_view>

namespace {

using test::Lines;

// A table "Inner" in a group of its own; one of its functors does a deed when its moment has come.
class TableFunctors : public test::TablePanel {
protected:
    // A functor whose captures must outlive what it does.
    template<class Read>
    auto doing(std::string_view functor, Read read)
    {
        return [this, functor, read, witness = std::string(100, 'w')](auto... row) {
            if (functor == moment && wait-- == 0)
                deed();
            EXPECT_EQ(witness.back(), 'w');
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
            model->addColumn(caption, doing("cell", [](std::size_t row) { return 70U + unsigned(row); }),
                             0.3F);
        }
        model->m_keyColumn = 0;
        model->m_defaultAction = doing("default", [](std::size_t) {});
        model->addAction("Entry", doing("entry", [](std::size_t) {}));
        show();
        if (!ui.read().contains("Key"))
            ui.click("Group");
    }

    std::string innerHeader()
    {
        const Lines all = shownLines();
        const auto found =
            std::find_if(all.begin(), all.end(), [](auto& line) { return line.find("Key") == 0; });
        return found == all.end() ? "none" : *found;
    }

    unsigned group = 0, inner = 0;
    std::size_t innerRows = 0;
    statistics::Table* model = nullptr;
    std::function<void()> deed;
    std::string_view moment;
    int wait = 0;
};

TEST_F(TableFunctors, mayDoAnythingAtAnyMoment)
{
    const auto createMany = [this] {
        for (int count = 0; count < 150; ++count)
            statistics::table(std::to_string(count), 0, inner, [] { return std::size_t{1}; });
    };
    const auto dropAll = [this] {
        model->m_header.clear();
        model->m_rowActions.clear();
        model->m_defaultAction = nullptr;
    };
    const struct {
        const char* what;
        std::function<void()> deed;
        std::string header; // of the inner table afterwards
    } deeds[] = {
        {"remove it", [this] { system().removeItem(inner); }, "none"},
        {"make room", [this] { system().removeItem(group), system().createLabel("New", 0); }, "none"},
        {"create", createMany, "Key | Other"},
        {"add columns", [this] { model->m_header.resize(9, model->m_header[1]); }, "Key | Other | Other"},
        {"drop a column", [this] { model->m_header.resize(1); }, "Key"},
        {"drop all", dropAll, "none"},
        {"sort", [this] { model->sort(1, false), system().updateNode(inner); }, "Key | Other"},
        {"lose rows", [this] { innerRows = 1, system().updateNode(inner); }, "Key | Other"},
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
                EXPECT_TRUE(ui.read().contains("alpha") && system().getTable(id) == &table)
                    << "the other one";
                system().removeItem(group);
            }
        };
        expectWhole("cell", 6, [this] { system().update(0, true); });
        expectWhole("cell", 10, [this] { ui.click("Other"); });
        expectWhole("count", 7, [this] { system().updateNode(inner); });
        expectWhole("count", 8, [this] { ui.click("Key"); });
        expectWhole("cell", 2, [this] { model->rowText(1); });
        expectWhole("cell", 3, [this] { model->sumColumn(0); });
        expectWhole("default", 1, [this] { ui.doubleClick("71"); });
        expectWhole("entry", 1, [this] { ui.rightClick("71"), ui.click("Entry"); });
    }
}

TEST_F(TableFunctors, thatThrowLeaveNoOldRowsAndWaitForTheirPeriod)
{
    item.period = 10;
    const Lines fresh = {"Name | Size", "alpha | 20 B", "beta | 30 B", "gamma | 10 B"};
    for (std::size_t whole = 0; whole < 3; ++whole) {
        table.m_header[1].getter = [this](std::size_t row) { return rows[row].size; };
        system().updateNode(id);
        table.m_header[1].getter = [this, whole](std::size_t row) {
            return row == table.m_order[whole] ? throw std::runtime_error("host") : rows[row].size * 10;
        };
        EXPECT_THROW(system().update(10, true), std::runtime_error);
        EXPECT_NO_THROW(system().update(9, true));
        ui.frames(2);
        EXPECT_EQ(lines(), Lines(fresh.begin(), fresh.begin() + 1 + static_cast<std::ptrdiff_t>(whole)));
    }
}

} // namespace
