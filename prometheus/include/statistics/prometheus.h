#pragma once

#include <statistics/export.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace statistics {

/// What a `PrometheusExporter` offers, and where.
struct PrometheusOptions {
    /// "host:port", or only a port, which means loopback. Port 0 takes a free one. IPv4 or a host's name.
    std::string address = "127.0.0.1:9464";
    std::string path = "/metrics"; ///< of the page, beginning with "/"
    /// Time between copies, in the unit of `update`'s `dt`; zero, negative or NaN copies at every update.
    float period = 1.0f;
    /// Added to every sample, for example {"host", "sim-3"}. "path", "text" and "duplicate" are taken.
    std::map<std::string, std::string> labels;
    /// Patterns on whole paths: "*" stands for any text, "/" included, "?" for one byte. A counter is offered
    /// if one of `include` matches, or there is none, and none of `exclude` does. Getters run either way.
    std::vector<std::string> include;
    std::vector<std::string> exclude; ///< see `include`
};

/// Offers every counter, its limits and whether it is outside them to Prometheus, over HTTP.
///
/// `update` copies the counters on the thread that drives the library; scrapes read the last copy on threads
/// of the exporter's own. A scrape never runs a host functor, and neither side waits for the other longer
/// than it takes to exchange an index.
///
/// There is no password and no encryption: whoever reaches the address reads every name, value and text.
/// Listen on loopback and put a proxy in front that asks for both where the page must leave the machine.
/// Clients can't hold the host up: a request has 8 KiB and one second, a page ten seconds, and not more than
/// 16 are answered at a time.
///
/// Its threads take no signals. They make the process ignore SIGPIPE when they start, also where the host had
/// a handler of its own. In a forked child an exporter serves nothing and may be destroyed. Several exporters
/// with addresses of their own may live side by side; none needs the `System` to be up.
class STATISTICS_EXPORT PrometheusExporter {
public:
    /// Starts the server. Until the first update the page tells of no counters. Throws
    /// `std::invalid_argument` for an address, path or label name that can't be used, and
    /// `std::runtime_error` with the address if it can't be listened on: taken, not this machine's, no
    /// permission.
    explicit PrometheusExporter(PrometheusOptions options = {});
    /// Stops the server: no thread and no port is left. Before or after `System::shutdown`, not inside one of
    /// the library's functors.
    ~PrometheusExporter();
    PrometheusExporter(const PrometheusExporter&) = delete;
    PrometheusExporter& operator=(const PrometheusExporter&) = delete;

    /// Once a frame, on the thread that drives the library. When the period has passed, and at the first
    /// call, reads every counter, which runs their getters, and publishes the copy; a negative `dt` does so
    /// at once. Without a `System` the copy has no counters. What a getter throws goes through; the last copy
    /// stays and the next attempt comes after a period. Called by a getter of its own walk it does nothing.
    void update(float dt);

    /// The port that it listens on.
    unsigned port() const;

private:
    struct Data;

    std::unique_ptr<Data> m_data;
};

} // namespace statistics
