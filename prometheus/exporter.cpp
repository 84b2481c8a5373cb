// Between the frame, which reads and publishes the counters, and the server's threads, which write pages.

#include "copy_board.h"
#include "counter_copy.h"
#include "page.h"
#include "page_server.h"

#include <statistics/prometheus.h>

#include <prometheus/check_names.h>

#include <limits>
#include <stdexcept>
#include <utility>

namespace statistics {

using namespace prometheus_export;

namespace {

/// Sets a flag for the time of a scope.
class [[nodiscard]] Raised {
public:
    explicit Raised(bool& flag) : m_flag(flag) { m_flag = true; }
    ~Raised() { m_flag = false; }
    Raised(const Raised&) = delete;
    Raised& operator=(const Raised&) = delete;

private:
    bool& m_flag;
};

const Labels& checked(const Labels& labels)
{
    for (const auto& label : labels) {
        const std::string& name = label.first;
        const bool isTaken = name == "path" || name == "text" || name == "duplicate";
        if (isTaken || !prometheus::CheckLabelName(name))
            throw std::invalid_argument("\"" + name + "\" can't be the name of a label");
    }
    return labels;
}

} // namespace

struct PrometheusExporter::Data {
    explicit Data(PrometheusOptions options)
        : period(options.period),
          writer(checked(options.labels), std::move(options.include), std::move(options.exclude)),
          server(options.address, std::move(options.path), [this] { return parts(); })
    {
    }

    /// Runs the getters of all counters.
    void publish();
    PageServer::Parts parts();
    Page latestPage();

    // The frame's.
    const float period;
    float elapsed = std::numeric_limits<float>::infinity(); ///< the first update is due
    bool isReading = false;
    CounterReader reader;

    CopyBoard board;

    // The server's threads', one at a time.
    std::mutex pageMutex;
    PageWriter writer;
    Page page; ///< of the latest copy that was asked for

    PageServer server; ///< last: its threads use all the others
};

void PrometheusExporter::Data::publish()
{
    const Raised reading(isReading);
    CounterCopy& copy = board.forWriting();
    copy.taken = std::chrono::steady_clock::now();
    reader.read(copy);
    copy.cost = std::chrono::steady_clock::now() - copy.taken;
    board.publish();
}

/// However often it is scraped, a copy is written out once.
Page PrometheusExporter::Data::latestPage()
{
    const std::lock_guard<std::mutex> lock(pageMutex);
    const CopyBoard::Reading copy(board);
    if (!page.samples || page.number != (*copy).number)
        page = writer.write(*copy);
    return page;
}

PageServer::Parts PrometheusExporter::Data::parts()
{
    const Page latest = latestPage();
    return {std::make_shared<const std::string>(writer.describe(latest)), latest.samples};
}

PrometheusExporter::PrometheusExporter(PrometheusOptions options)
    : m_data(std::make_unique<Data>(std::move(options)))
{
}

PrometheusExporter::~PrometheusExporter() = default;

void PrometheusExporter::update(float dt)
{
    m_data->elapsed += dt;
    if ((m_data->elapsed < m_data->period && dt >= 0) || m_data->isReading)
        return;
    m_data->elapsed = 0;
    m_data->publish();
}

unsigned PrometheusExporter::port() const
{
    return m_data->server.port();
}

} // namespace statistics
