#include "page.h"

#include "label_text.h"

#include <prometheus/metric_family.h>
#include <prometheus/text_serializer.h>

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace statistics::prometheus_export {

namespace {

using Sample = CounterCopy::Sample;

void appendHead(std::string& page, const char* family, const char* help)
{
    page.append("# HELP ").append(family).append(" ").append(help);
    page.append("\n# TYPE ").append(family).append(" gauge\n");
}

void appendSample(std::string& page, const char* family, const std::string& labels, Number value)
{
    page.append(family).append(labels).append("} ");
    value.print(page);
    page += '\n';
}

Number outsideLimits(const Sample& sample)
{
    return sample.hasLimits ? Number(sample.outside ? 1 : 0) : Number();
}

Labels repairedValues(Labels labels)
{
    for (auto& [name, value] : labels)
        value = repaired(value);
    return labels;
}

prometheus::MetricFamily gauge(const char* name, const char* help, const Labels& labels, double value)
{
    prometheus::ClientMetric metric;
    for (const auto& [label, text] : labels)
        metric.label.push_back({label, text});
    metric.gauge.value = value;
    return {name, help, prometheus::MetricType::Gauge, {std::move(metric)}};
}

} // namespace

PageWriter::PageWriter(Labels labels, std::vector<std::string> include, std::vector<std::string> exclude)
    : m_labels(repairedValues(std::move(labels))),
      m_include(std::move(include)),
      m_exclude(std::move(exclude))
{
}

Page PageWriter::write(const CounterCopy& copy)
{
    if (m_names != copy.names) {
        writeLabels(*copy.names);
        m_names = copy.names;
    }
    auto samples = std::make_shared<std::string>();
    samples->reserve(m_pageSize);
    writeNumbers(*samples, copy);
    writeTexts(*samples, copy);
    m_pageSize = samples->size() + samples->size() / 16; // numbers change their lengths
    const auto counters = std::count_if(copy.samples.begin(), copy.samples.end(),
                                        [this](const Sample& sample) { return isOffered(sample); });
    return {copy.number, copy.taken, copy.cost, static_cast<std::size_t>(counters), std::move(samples)};
}

void PageWriter::writeNumbers(std::string& page, const CounterCopy& copy) const
{
    const auto write = [&](const char* family, const char* help, const auto& numberOf) {
        appendHead(page, family, help);
        for (const Sample& sample : copy.samples)
            if (const Number number = numberOf(sample); number && isOffered(sample))
                appendSample(page, family, m_labelTexts[sample.name], number);
    };
    write("statistics_value", "The value of the counter at this path, in the unit of the host.",
          [](const Sample& sample) { return sample.value; });
    write("statistics_lower_limit", "The lowest value that the counter should have.",
          [](const Sample& sample) { return sample.lower; });
    write("statistics_upper_limit", "The highest value that the counter should have.",
          [](const Sample& sample) { return sample.upper; });
    write("statistics_outside_limits", "1 while the counter is outside its limits, 0 within them.",
          outsideLimits);
}

void PageWriter::writeTexts(std::string& page, const CounterCopy& copy) const
{
    constexpr const char* kFamily = "statistics_text_info";
    appendHead(page, kFamily, "1, with the text that the counter at this path shows.");
    for (const Sample& sample : copy.samples) {
        if (!sample.isText || !isOffered(sample))
            continue;
        std::string labels = m_labelTexts[sample.name] + ',';
        appendLabel(labels, "text", repaired(copy.texts[sample.text]));
        appendSample(page, kFamily, labels, Number(1));
    }
}

bool PageWriter::isOffered(const Sample& sample) const
{
    return !m_labelTexts[sample.name].empty();
}

/// Paths that are the same, or became so, are counted through: a server drops all but one sample with the
/// same labels.
void PageWriter::writeLabels(const Names& names)
{
    std::string constant = "{";
    for (const auto& [name, value] : m_labels) {
        appendLabel(constant, name, value);
        constant += ',';
    }
    m_names.reset(); // so that what fails for want of memory is made anew
    m_labelTexts.assign(names.size(), {});
    std::unordered_map<std::string, unsigned> seen;
    for (std::size_t index = 0; index < names.size(); ++index) {
        if (!isChosen(names[index].path))
            continue;
        std::string path = repaired(names[index].path);
        std::string& text = m_labelTexts[index] = constant;
        appendLabel(text, "path", path);
        if (const unsigned count = ++seen[std::move(path)]; count > 1)
            appendLabel(text += ',', "duplicate", std::to_string(count));
    }
}

bool PageWriter::isChosen(const std::string& path) const
{
    const auto fits = [&](const std::string& pattern) { return matches(pattern, path); };
    return (m_include.empty() || std::any_of(m_include.begin(), m_include.end(), fits)) &&
           std::none_of(m_exclude.begin(), m_exclude.end(), fits);
}

std::string PageWriter::describe(const Page& page) const
{
    const std::chrono::duration<double> age = std::chrono::steady_clock::now() - page.taken;
    const auto counters = static_cast<double>(page.counters);
    return prometheus::TextSerializer().Serialize(
        {gauge("statistics_counters", "Counters on this page.", m_labels, counters),
         gauge("statistics_copy_age_seconds", "Time since the counters were read.", m_labels, age.count()),
         gauge("statistics_copy_duration_seconds", "Time that the host spent reading them.", m_labels,
               page.cost.count())});
}

} // namespace statistics::prometheus_export
