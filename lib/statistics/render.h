#pragma once

#include "change_log.h"
#include "free_slot_vector.h"
#include "history.h"
#include "items.h"
#include "past_range.h"
#include "schedule.h"
#include "text_lines.h"

#include <statistics/diff_table.h>
#include <statistics/options.h>
#include <statistics/preset.h>
#include <statistics/table.h>
#include <statistics/value.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace statistics {

/// Owns every item that the panel can show, one pool per kind, and knows how to draw, sample, name and free
/// an item by its id. One `Render` serves three trees, which hold only item ids.
///
/// Host functors run inside sampling and drawing and may create and remove items, which moves whole pools: no
/// reference into a pool is held across a call of a functor. Functors are run in place (pinned.h); what owns
/// them outlives the call (call_scope.h).
class Render {
public:
    // Creating. The result is an item id; INVALID_ID, with a report, if the pool is full.
    unsigned createLabel(const std::string& text);
    unsigned createCounter(const std::string& name, std::unique_ptr<Counter> counter, float period);
    unsigned createTable(const std::string& name, std::function<std::size_t()> rowCount, float period);
    unsigned createPreset(const std::string& name, std::size_t index,
                          std::function<std::size_t()> getSelectedFunctor,
                          std::function<void(std::size_t)> selectFunctor,
                          std::function<LimitMap&(std::size_t)> accessPresetFunctor,
                          std::unique_ptr<PresetSaveLoadParams> params);
    unsigned createCheckbox(const std::string& name, std::function<void(bool)> onChange);
    /// The one snapshot control and the one comparison: a second call replaces the functors.
    unsigned createSnapshotControl(std::function<void()> takeSnapshot, std::function<void()> saveDiff,
                                   std::function<void()> clearTree);
    unsigned createDiffTable(std::function<DiffTable&()> access);
    void clearSnapshotControl();
    void clearDiffTable();
    void clearPresets();
    /// Frees the item's slot. The kinds without a pool are reported.
    void removeItem(unsigned id);

    // Looking things up.
    ItemType itemType(unsigned id) const;
    /// Empty for presets and the kinds without a pool.
    const std::string& itemName(unsigned id) const;
    /// Null for an item of another kind.
    Counter* getCounter(unsigned id);
    Table* getTable(unsigned id);
    /// True if a table at this address is on the panel.
    bool holdsTable(const Table* table) const;
    ItemPreset& getPreset(unsigned slot);
    /// Null for a counter that shows none.
    const ShownLimits* shownLimits(const ItemCounter& item) const
    {
        return item.showsLimits() ? &printedLimits[item.limits] : nullptr;
    }
    void forEachCounter(const std::function<void(ItemCounter&)>& visit);
    /// That many samples of each counter, the newest; to be handed to `setHistory`.
    History resizedHistory(std::size_t samples) const;
    void setHistory(History resized) noexcept;
    /// The present value of a counter, the rows or the sum of `column` of a table, `Empty` for other items.
    /// Runs the functors of that item.
    CounterValue itemValue(unsigned id, std::size_t column);

    // Sampling, which runs host functors.
    /// Samples every counter, then every table, whose period has passed.
    void update(float dt, bool enabled);
    /// Samples one item at once and leaves its timer alone.
    void updateNode(unsigned id);

    // Drawing, inside an ImGui frame.
    bool beginWindow();
    void endWindow();
    /// True if the item opened a level, which `endNode` closes. Runs host functors behind what the user
    /// clicks, and a preset's `getSelectedFunctor`.
    bool drawItem(unsigned id, unsigned depth, bool hasChildren);
    void endNode();

    free_slot_vector<std::string> labels;
    free_slot_vector<ItemCounter> counters;
    /// Of `counters`, away from what reading all of those touches.
    free_slot_vector<ShownLimits> printedLimits;
    free_slot_vector<ItemTable> tables;
    free_slot_vector<ItemPreset> presets;
    free_slot_vector<ItemCheckbox> checkboxes;
    Schedule counterSchedule; ///< of `counters`
    Schedule tableSchedule;   ///< of `tables`
    std::function<void()> takeSnapshotFunctor;
    std::function<void()> saveDiffFunctor;
    std::function<void()> clearTreeFunctor;
    std::function<std::string()> clearTreeNoteFunctor; ///< what "Clear tree" would do, in words
    std::string clearTreeNote; ///< these words while the user points at the button; empty: to be asked for
    std::function<DiffTable&()> diffTableFunctor;
    std::size_t diffColumnCount = NO_INDEX; ///< snapshot columns when the comparison was last drawn
    bool diffWidthsPending = true;
    bool windowOpen = true;
    bool opensAtFirst = false; ///< the node that is drawn next is open until the user closes it
    ChangeLog lineChanges;     ///< slots of counters whose texts may take other room than before
    Options options;
    History history; ///< of `counters`

    /// What the user looks at of the past.
    struct HistoryView {
        unsigned slot = INVALID_ID;     ///< of the counter that the mouse is on in this frame
        unsigned menuNode = INVALID_ID; ///< of the counter that the context menu was opened on
        std::string menuPath;           ///< by which that node is known to show the counter still
        PastRanges ranges;              ///< of the bars in view
    } historyView;

private:
    class Refresh;
    using PresetFunctor = PresetSaveLoadParams::Functor PresetSaveLoadParams::*;

    static void reportWrongType();

    void printLimits(ItemCounter& item);
    void removeLimits(unsigned slot);
    void removeCounter(unsigned slot);
    void removeTable(unsigned slot);
    void showValue(unsigned slot, const CounterValue& value);
    bool drawLabel(unsigned slot, bool hasChildren);
    bool drawCounter(unsigned slot, bool hasChildren);
    void watchHistory(unsigned slot);
    bool drawPresetButton(unsigned slot, PresetFunctor functor, const char* caption, const char* tooltip);
    void drawDiffTable();
    bool noteDiffShape(const DiffTable& table);

    // All of these run host functors.
    void updateCounter(unsigned slot);
    void updateTable(unsigned slot);
    void drawCheckbox(unsigned slot);
    void drawSnapshotControl();
    void drawClearTreeNote();
    bool drawTable(unsigned slot);
    std::size_t drawTableColumns(unsigned slot, Table& table);
    void drawTableHeader(unsigned slot, Table& table, std::size_t columns);
    void sortTable(unsigned slot, Table& table, std::size_t column);
    void drawTableMenu(unsigned slot, Table& table);
    void drawPreset(unsigned slot);
    void drawPresetCheckbox(unsigned slot);
    void drawPresetButtons(unsigned slot);
    enum class EPresetLimits { OwnRow, Active };
    void runPresetFunctor(unsigned slot, PresetFunctor functor, EPresetLimits which);

    ItemCounter* counterItem(unsigned slot, const Counter& counter);
    ItemTable* tableItem(unsigned slot, const Table& table);

    std::size_t m_diffRowCount = 0;
    RowLines m_diffLines;    ///< of the comparison's rows
    std::string m_diffText;  ///< memory for the values' texts
    std::string m_valueText; ///< memory for a counter's new text
};

} // namespace statistics
