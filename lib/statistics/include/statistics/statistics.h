#pragma once

#include <statistics/counter.h>
#include <statistics/diff_table.h>
#include <statistics/export.h>
#include <statistics/preset.h>
#include <statistics/report.h>
#include <statistics/system.h>
#include <statistics/table.h>
#include <statistics/value.h>

#include <cstddef>
#include <functional>
#include <string>

/// A host in few lines:
///
///     statistics::System::initialize();
///     statistics::Options options;
///     options.background = 0.9f; // the panel is clear at first
///     statistics::System::instance()->setOptions(options);
///     statistics::label("Frame");
///     ...
///     statistics::System::instance()->update(seconds, true); // in each frame,
///     statistics::System::instance()->draw();                // between ImGui::NewFrame and ImGui::Render
///     ...
///     statistics::System::shutdown();
///
/// The free functions: the members of `System` that hosts use most, safe to call at any time. Without an
/// instance they do nothing and give `INVALID_ID` or an empty text; arguments are dropped. A null text counts
/// as no name and gives `INVALID_ID`.
namespace statistics {

/// `System::createLabel`. None of these runs functors, but `getTableCell`.
STATISTICS_EXPORT unsigned label(const char* name, unsigned parent = 0);
/// `System::getItemIndex`.
STATISTICS_EXPORT unsigned getItemIndex(const char* path);
/// `System::createChildrenCounter` without limits.
STATISTICS_EXPORT unsigned childrenCounter(const std::string& name, float period, unsigned parent,
                                           std::size_t column, const std::string& format);
/// `System::createTable`.
STATISTICS_EXPORT unsigned table(const std::string& name, float period, unsigned parent,
                                 std::function<std::size_t()> rowCount);

/// Makes a column the one whose cells select their row. Any value is stored; one that is no column selects
/// nothing. Nothing if the node holds no table.
STATISTICS_EXPORT void setKeyColumn(unsigned id, std::size_t column);
/// A cell's text by data row, whatever the order on the screen. Runs the column's getter, with any `row` that
/// is given. Empty if the node holds no table.
STATISTICS_EXPORT std::string getTableCell(unsigned id, std::size_t row, std::size_t column);
/// Appends an entry to the context menu of a table's rows. The action gets the data row. Captions may repeat.
STATISTICS_EXPORT void addRowAction(unsigned id, std::string caption,
                                    std::function<void(std::size_t)> action);
/// Sets what a double click on a row does; empty for nothing. The action gets the data row.
STATISTICS_EXPORT void setDefaultAction(unsigned id, std::function<void(std::size_t)> action);
/// `System::addTableCliboardAction`.
STATISTICS_EXPORT void addClipboardAction(unsigned id);

} // namespace statistics
