#pragma once

#include <statistics/counter.h>
#include <statistics/diff_table.h>
#include <statistics/export.h>
#include <statistics/options.h>
#include <statistics/preset.h>
#include <statistics/reading.h>
#include <statistics/table.h>
#include <statistics/value.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <list>
#include <memory>
#include <string>

namespace statistics {

/// The one object through which a host reaches the library: the tree of items, its sampling, its panel.
///
/// Items are named by node ids. Node 0 is the root, whose children are the top level of the panel. An id
/// stays valid until its item is removed and may be given out again afterwards. Every creating call finds or
/// creates: if `parent` has a child of that name, of whatever kind, that child's id is the result and what
/// was handed in is dropped, functors included. So a plugin that comes back removes first what it left, or
/// its old functors stay. A `parent` that isn't a live node is reported, and so is a pool that is full
/// (65,536 items of one kind); both give `INVALID_ID`.
///
/// All calls come from one thread at a time; host functors run on that thread inside the call that reaches
/// them. From a functor every operation may be called but `initialize`, `shutdown`, `update` and `draw`,
/// which are reported and do nothing there. They are called in place, never through a copy; what a functor
/// removes or replaces, itself included, is destroyed when the outermost call returns. (Only a counter's
/// getter must not be replaced while it runs.) Where members run functors they say so; the others run none,
/// but for destructors of what they drop or remove.
///
/// The library defines no exception and catches none: what a functor throws reaches the host, with ImGui's
/// stacks balanced. Where memory fails, `std::bad_alloc` leaves a call that creates, removes or chooses as if
/// it hadn't been made; `update` and `draw` go on with the next one. Members assume that the instance exists.
class STATISTICS_EXPORT System {
public:
    struct Data;

    /// Creates the one `System`. If there is one already, that is reported and it is replaced.
    static void initialize();
    /// Destroys the `System` and everything in it. Snapshot files stay on disk. Without one it is reported.
    static void shutdown();
    /// Null while the system is down; no report.
    static System* instance();
    ~System();
    System(const System&) = delete;
    System& operator=(const System&) = delete;

    /// Draws the panel, a window titled "Statistics", inside the host's ImGui frame. Reads no host data for
    /// counters and tables. Buttons, check boxes, headers and menu entries run the host's functors at once.
    /// Outside a frame, or into another release of ImGui than the library was compiled with, it is reported
    /// and draws nothing.
    void draw();
    /// Samples every counter and table whose period has passed, by running their functors. `dt` is the time
    /// since the previous call, in the unit of all periods; a negative one samples everything. With `enabled`
    /// false nothing happens.
    void update(float dt, bool enabled);
    /// Shows or hides the panel; its close box hides it. Open at first.
    void setPanelOpen(bool open);
    bool panelOpen() const;
    /// Turns on what the plain panel doesn't have, at any time. What is off costs nothing. Where memory
    /// fails, `std::bad_alloc` leaves all as it was.
    void setOptions(const Options& options);
    /// As they are in force: values out of range are clamped.
    const Options& options() const;
    /// Shows on the panel only those of the host's items whose paths hold all the words given, separated by
    /// blanks and compared without the case of ASCII letters, and none of the words after a "-", as in
    /// "disk -read": with what leads to them, opened. Nodes that the user opens or closes meanwhile are as
    /// before when the filter goes. Without any word everything is shown, as at first. Works with
    /// `Options::filter` and without: that is the line in which the user sees and changes this text.
    void setFilter(const std::string& text);
    /// As it was set by the host or the user.
    const std::string& filter() const;

    /// Samples the node's item at once, outside its period, by running its functors. A stale id does nothing;
    /// but one that has been given out again since is somebody else's node: drop ids when you remove.
    void updateNode(unsigned id);
    /// Opens or closes the node on the panel when that is next drawn, as the user would: from then on it is
    /// the user's again. Opening opens the nodes above it, too. Of several calls for one node the last
    /// counts. A stale id does nothing.
    void openNode(unsigned id, bool open);
    /// Removes the node with all below it; needs no memory. A stale id does nothing, with the same trap: ids
    /// are given out again, the one freed last first. The root is reported and stays.
    void removeItem(unsigned id);
    /// The node of a path, names joined by "/" from the top level down; `INVALID_ID` if there is none. A name
    /// that holds a "/" can't be reached.
    unsigned getItemIndex(const std::string& path) const;
    /// The names from the top level down to the node, joined by "/". Empty for the root and for a stale id.
    std::string path(unsigned id) const;

    /// A line of text that groups what is below it.
    unsigned createLabel(const std::string& name, unsigned parent = 0);
    /// A sampled value. `period` is the time between samples; zero, negative or NaN samples at every update,
    /// infinity at the first one only. If the active preset has limits under the counter's key, they replace
    /// its own. A null counter is reported and gives `INVALID_ID`.
    unsigned createCounter(const std::string& name, std::unique_ptr<Counter> counter, float period,
                           unsigned parent = 0);

    /// A counter whose value is the sum of its direct children: counters give their value, tables the sum of
    /// `column`, or with `NO_INDEX` their number of rows at the last refresh; other items nothing. The kind
    /// is that of the first child with a value; kinds that can't be added are reported at sampling. A sample
    /// runs the functors of all these children.
    unsigned createChildrenCounter(const std::string& name, std::size_t column, float period,
                                   const std::string& format, unsigned parent = 0);
    /// The same with limits from the active preset's entry under `limitKey`.
    unsigned createChildrenCounter(const std::string& name, std::size_t column, float period,
                                   const std::string& limitKey, const std::string& format,
                                   const std::string& limitFormat, unsigned parent = 0);
    /// The same with limits of its own.
    unsigned createChildrenCounter(const std::string& name, std::size_t column, float period,
                                   CounterValue min, CounterValue max, const std::string& format,
                                   const std::string& limitFormat, unsigned parent = 0);

    /// A table over the host's rows. Columns and actions are added through `getTable` before the first
    /// update; a column added later shows from the next refresh on. `period` is the time between refreshes.
    unsigned createTable(const std::string& name, std::function<std::size_t()> rowCount, float period,
                         unsigned parent = 0);
    /// The model of a table, valid until its item goes; null if the node holds no table. An id that isn't a
    /// live node is reported and gives null.
    Table* getTable(unsigned id);
    /// Adds the entry "Copy to Clipboard" to the rows' context menu, which copies the row's cells separated
    /// by tabs: those of this table, wherever a host copies the entry to; nothing once the table is gone.
    /// Nothing if the node holds no table. The spelling of the name is part of the interface.
    void addTableCliboardAction(unsigned id);

    /// The paths of all counters that are outside their limits now, in tree order. Runs the getters of
    /// counters with limits.
    std::list<std::string> collectWarnings() const;
    /// Reads every counter now, outside its period, in tree order, and hands it to `visit`. Runs the
    /// counters' getters; they and `visit` may create and remove items. An empty `visit` reads nothing.
    /// Without `withPaths` every path is empty, and counters that come during the walk are left to the next
    /// one: twice as fast, for a caller that keeps the paths while the `revision` stays.
    void forEachCounter(const std::function<void(const CounterReading&)>& visit, bool withPaths = true) const;
    /// The samples that are kept of a counter, oldest first; empty while `Options::history` is 0, before the
    /// first sample, for what isn't a counter and for a stale id. Texts and `Empty` aren't kept: a counter
    /// that has only given those has no past, and one that gave numbers before has gaps, which are NaN. What
    /// takes the place of a removed counter begins anew. Runs no functors.
    CounterHistory history(unsigned id) const;
    /// Another number whenever an item of the host's comes or goes; no number comes again in a process,
    /// whichever `System` it is. Reads no host data.
    std::uint64_t revision() const;

    /// Adds a preset, a named set of limits; the limits are copied. Always adds: names may repeat. Presets
    /// stand on top of the panel. Nothing becomes active by it, unless the index that was chosen last is the
    /// new preset's: then its box is ticked.
    void createPreset(const std::string& name, const LimitMap& limits,
                      std::unique_ptr<PresetSaveLoadParams> params = {});
    /// Makes a preset active and gives its limits to every counter: those of the counter's key, or zeros. An
    /// index out of range is reported and changes nothing.
    void choosePreset(std::size_t index);
    /// Removes all presets. Counters keep their limits. What the presets hold is destroyed when the call
    /// returns, inside a functor when the library's outermost call does.
    void clearPresets();
    /// The preset whose limits are in force, `NO_INDEX` before the first choice. Clearing the presets leaves
    /// the index as it is.
    std::size_t getActivePreset() const;
    /// The row of a preset, by index; valid until presets come or go. One out of range is reported and throws
    /// `std::bad_variant_access`.
    ItemPreset& getPreset(unsigned slot);

    /// Turns on snapshots: files `<root>/<folder>/<folder>_<time>.csv`, one folder per run. Finds what
    /// earlier runs left under `root` and adds the buttons, check boxes and the comparison to the panel.
    /// Give it a `root` that holds nothing else: "Clear tree" deletes every folder directly below it that has
    /// a file, with all that is in it. A relative one is settled by this call. Other processes may use it,
    /// too; what they remove is no error here. A snapshot that can't be written is kept in memory.
    /// `saveDiff` is the action of the button "Save diff", may be empty. False if snapshots are on already,
    /// or if `root` is empty or `folder` isn't one plain path component (reported). Throws what reading the
    /// folders throws; then nothing has changed.
    bool createStatsAnalyzer(const std::string& root, const std::string& folder,
                             std::function<void()> saveDiff);
    /// Turns snapshots off. Files stay on disk. False if they weren't on.
    bool removeStatsAnalyzer();
    /// Takes a snapshot as the panel's button does, for hosts that record by themselves. Runs the counters'
    /// getters, and throws what they throw; then nothing was recorded.
    RecordedSnapshot recordSnapshot();
    /// The comparison, valid while snapshots are on. Without them it is reported and the result is empty.
    const DiffTable& getDiffTable();

private:
    friend struct TestAccess;

    System();

    /// Runs the counters' getters.
    void takeSnapshot();
    void updateSnapshots();
    void clearSnapshots();
    /// Runs the row count and the getters.
    static void copyRow(Table* table, std::size_t row);
    Counter::Getter childrenSum(std::size_t column);

    std::unique_ptr<Data> m_data;
    std::size_t activePreset = NO_INDEX;
    std::deque<LimitMap> limitPresets; ///< functors hold maps while they create presets: none may move
};

} // namespace statistics
