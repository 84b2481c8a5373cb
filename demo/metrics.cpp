#include "metrics.h"

#include <statistics/prometheus.h>

#include <cstdio>
#include <exception>
#include <memory>
#include <string>

namespace demo {

namespace {

statistics::PrometheusOptions exporterOptions(const Options& options)
{
    statistics::PrometheusOptions result;
    result.address = options.metrics;
    for (const std::string& label : options.labels) {
        const std::size_t equals = label.find('=');
        result.labels[label.substr(0, equals)] = label.substr(equals + 1);
    }
    return result;
}

} // namespace

std::function<void(float)> offerMetrics(const Options& options)
{
    if (options.metrics.empty())
        return {};
    try {
        const auto exporter = std::make_shared<statistics::PrometheusExporter>(exporterOptions(options));
        std::printf("metrics on port %u\n", exporter->port());
        return [exporter](float dt) { exporter->update(dt); };
    } catch (const std::exception& error) {
        std::fprintf(stderr, "statistics_demo: going on without metrics: %s\n", error.what());
        return {};
    }
}

} // namespace demo
