#include "page.h"

#include "label_text.h"

#include <prometheus/metric_family.h>
#include <prometheus/text_serializer.h>

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace statistics::prometheus_export {

namespace {

/// The lines of one family, which stand together on the page.
struct Family {
    Family(std::string familyName, const char* help) : name(std::move(familyName))
    {
        lines = "# HELP " + name + " " + help + "\n# TYPE " + name + " gauge\n";
    }

    void add(const std::string& labels, const Number& value)
    {
        if (!value)
            return;
        lines.append(name).append(labels).append("} ");
        value.print(lines);
        lines += '\n';
    }

    std::string name;
    std::string lines;
};

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

struct PageWriter::Families {
    Family value{"statistics_value", "The value of the counter at this path, in the unit of the host."};
    Family lower{"statistics_lower_limit", "The lowest value that the counter should have."};
    Family upper{"statistics_upper_limit", "The highest value that the counter should have."};
    Family outside{"statistics_outside_limits", "1 while the counter is outside its limits, 0 within them."};
    Family text{"statistics_text_info", "1, with the text that the counter at this path shows."};
};

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
    Families families;
    Page page{copy.number, copy.taken, copy.cost, 0, {}};
    for (const CounterCopy::Sample& sample : copy.samples) {
        if (m_labelTexts[sample.name].empty())
            continue;
        ++page.counters;
        writeSample(families, copy, sample);
    }
    auto samples = std::make_shared<std::string>(std::move(families.value.lines));
    for (const Family* family : {&families.lower, &families.upper, &families.outside, &families.text})
        samples->append(family->lines);
    page.samples = std::move(samples);
    return page;
}

void PageWriter::writeSample(Families& families, const CounterCopy& copy,
                             const CounterCopy::Sample& sample) const
{
    const std::string& labels = m_labelTexts[sample.name];
    families.value.add(labels, sample.value);
    if (sample.hasLimits) {
        families.lower.add(labels, sample.lower);
        families.upper.add(labels, sample.upper);
        families.outside.add(labels, Number(CounterValue(sample.outside ? 1 : 0)));
    }
    if (sample.isText) {
        std::string withText = labels + ',';
        appendLabel(withText, "text", repaired(copy.texts[sample.text]));
        families.text.add(withText, Number(CounterValue(1)));
    }
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
        if (!isOffered(names[index].path))
            continue;
        std::string path = repaired(names[index].path);
        std::string& text = m_labelTexts[index] = constant;
        appendLabel(text, "path", path);
        if (const unsigned count = ++seen[std::move(path)]; count > 1)
            appendLabel(text += ',', "duplicate", std::to_string(count));
    }
}

bool PageWriter::isOffered(const std::string& path) const
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
