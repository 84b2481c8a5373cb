// A host that offers its counters to Prometheus, on a port that is free.

#include <statistics/prometheus.h>
#include <statistics/statistics.h>

#include <memory>

int main()
{
    using namespace statistics;
    System::initialize();
    int reads = 0;
    System::instance()->createCounter(
        "Reads", std::make_unique<Counter>([&reads] { return CounterValue(++reads); }), 1.0f);
    PrometheusOptions options;
    options.address = "0";
    PrometheusExporter exporter(options);
    exporter.update(0.1f);
    System::shutdown();
    return exporter.port() != 0 && reads == 1 ? 0 : 1;
}
