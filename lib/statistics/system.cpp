// The life of the one `System`, its frame, and the items that hosts create.

#include "system_data.h"

#include "assertion.h"
#include "call_scope.h"
#include "clipboard.h"
#include "only_library.h"
#include "path.h"
#include "pinned.h"

#include <string_view>
#include <utility>

namespace statistics {

std::unique_ptr<System> System::Data::s_system;

namespace {

/// A `System` that is up at process exit goes as in `shutdown`: functors that are destroyed find no instance.
struct ExitGuard {
    ExitGuard() = default;
    ~ExitGuard() { const std::unique_ptr<System> last = std::move(System::Data::s_system); }
    ExitGuard(const ExitGuard&) = delete;
    ExitGuard& operator=(const ExitGuard&) = delete;
};

const ExitGuard s_exitGuard; ///< behind s_system, so it is destroyed first

/// Once: the libraries of a process don't change by themselves.
void reportOtherLibrary()
{
    static const bool told = !ORV_ASSERT_MESSAGE(
        isOnlyLibrary(),
        "The process holds two libraries of this kind: link either the one with the panel or "
        "the one without.");
    static_cast<void>(told);
}

} // namespace

void System::initialize()
{
    if (!Data::isOutsideFunctors())
        return;
    ORV_ASSERT(System::Data::s_system == nullptr);
    reportOtherLibrary();
    Data::s_system = std::unique_ptr<System>(new System);
}

void System::shutdown()
{
    if (!Data::isOutsideFunctors())
        return;
    ORV_ASSERT(System::Data::s_system != nullptr);
    const std::unique_ptr<System> last = std::move(Data::s_system);
}

System* System::instance()
{
    return Data::s_system.get();
}

bool System::Data::isOutsideFunctors()
{
    return ORV_ASSERT_MESSAGE(!CallScope::active(),
                              "A functor must not call initialize, shutdown, update or draw.");
}

System::System() : m_data(std::make_unique<Data>()) {}

System::~System() = default;

void System::update(float dt, bool enabled)
{
    if (Data::isOutsideFunctors())
        m_data->render.update(dt, enabled);
}

void System::setPanelOpen(bool open)
{
    m_data->render.windowOpen = open;
}

bool System::panelOpen() const
{
    return m_data->render.windowOpen;
}

/// What may fail for want of memory comes first.
void System::setOptions(const Options& options)
{
    Render& render = m_data->render;
    History history = render.resizedHistory(options.history);
    Options wanted = options;
    wanted.history = history.capacity();
    // What isn't a number compares false.
    wanted.background = options.background > 0 ? std::min(options.background, 1.0f) : 0.0f;
    wanted.compareTolerance = options.compareTolerance > 0 ? options.compareTolerance : 0.0f;
    m_data->applyToSnapshots(wanted);
    render.setHistory(std::move(history));
    render.options = wanted;
}

const Options& System::options() const
{
    return m_data->render.options;
}

void System::setFilter(const std::string& text)
{
    m_data->filter.set(text);
}

const std::string& System::filter() const
{
    return m_data->filter.text();
}

void System::updateNode(unsigned id)
{
    m_data->tree.updateNode(id, m_data->render);
}

void System::openNode(unsigned id, bool open)
{
    m_data->tree.requestOpen(id, open);
}

void System::removeItem(unsigned id)
{
    m_data->tree.removeItem(id, m_data->render);
}

unsigned System::getItemIndex(const std::string& path) const
{
    if (path.empty())
        return INVALID_ID;
    std::string_view names = path;
    unsigned node = 0;
    while (!names.empty() && node != INVALID_ID)
        node = m_data->tree.findChild(node, takeName(names), m_data->render);
    return node;
}

unsigned System::createLabel(const std::string& name, unsigned parent)
{
    return m_data->findOrCreate(name, parent, [&] { return m_data->render.createLabel(name); });
}

unsigned System::createCounter(const std::string& name, std::unique_ptr<Counter> counter, float period,
                               unsigned parent)
{
    return m_data->findOrCreate(name, parent, [&] {
        if (!ORV_ASSERT(counter))
            return INVALID_ID;
        if (activePreset < limitPresets.size())
            if (const Limit* limit = limitOf(*counter, limitPresets[activePreset]))
                counter->setLimits(limit->min, limit->max);
        return m_data->render.createCounter(name, std::move(counter), period);
    });
}

/// The getter refers to a node that doesn't exist yet: nothing adds a node before the counter's own.
Counter::Getter System::childrenSum(std::size_t column)
{
    return ChildrenSum{&m_data->tree, &m_data->render, m_data->tree.nextId(), column};
}

unsigned System::createChildrenCounter(const std::string& name, std::size_t column, float period,
                                       const std::string& format, unsigned parent)
{
    return createCounter(name, std::make_unique<Counter>(childrenSum(column), format), period, parent);
}

unsigned System::createChildrenCounter(const std::string& name, std::size_t column, float period,
                                       const std::string& limitKey, const std::string& format,
                                       const std::string& limitFormat, unsigned parent)
{
    return createCounter(name, std::make_unique<Counter>(childrenSum(column), format, limitFormat, limitKey),
                         period, parent);
}

unsigned System::createChildrenCounter(const std::string& name, std::size_t column, float period,
                                       CounterValue min, CounterValue max, const std::string& format,
                                       const std::string& limitFormat, unsigned parent)
{
    return createCounter(
        name,
        std::make_unique<Counter>(std::move(min), std::move(max), childrenSum(column), format, limitFormat),
        period, parent);
}

unsigned System::createTable(const std::string& name, std::function<std::size_t()> rowCount, float period,
                             unsigned parent)
{
    return m_data->findOrCreate(
        name, parent, [&] { return m_data->render.createTable(name, std::move(rowCount), period); });
}

Table* System::getTable(unsigned id)
{
    return m_data->tree.check(id) ? m_data->render.getTable(m_data->tree.item(id)) : nullptr;
}

/// The host may copy the action to where it outlives the table, or the `System`. Runs the table's functors.
void System::copyRow(Table* table, std::size_t row)
{
    const CallScope call;
    const System* system = instance();
    const auto isThere = [&] { return system && system->m_data->render.holdsTable(table); };
    if (!isThere() || row >= pin(table->m_rowCount)())
        return;
    const std::string text = table->rowText(row);
    if (isThere())
        setClipboardText(text);
}

void System::addTableCliboardAction(unsigned id)
{
    if (Table* table = getTable(id))
        table->addAction("Copy to Clipboard", [table](std::size_t row) { copyRow(table, row); });
}

} // namespace statistics
