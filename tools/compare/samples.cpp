#include "samples.h"

#include "numbers.h"

#include <statistics/value.h>

#include <functional>

namespace compare {

namespace {

/// What a snapshot holds for a counter without a value.
const std::string& noValue()
{
    static const std::string text = statistics::CounterValue().toString(nullptr);
    return text;
}

void append(Series& series, std::string_view value)
{
    double number = 0;
    if (parseNumber(value, number)) {
        series.lastKind = EKind::Number;
        series.push(number);
    } else if (value == noValue()) {
        series.lastKind = EKind::Missing;
    } else {
        series.lastKind = EKind::Text;
        if (series.texts.empty())
            series.firstText = value;
        series.texts.push_back(std::hash<std::string_view>()(value));
    }
}

void takeBack(Series& series)
{
    if (series.lastKind == EKind::Number)
        series.pop();
    else if (series.lastKind == EKind::Text)
        series.texts.pop_back();
}

} // namespace

void Series::push(double number)
{
    if (latestCount == kLatest)
        settle();
    latest[latestCount++] = number;
}

void Series::pop()
{
    if (latestCount > 0)
        --latestCount;
    else
        numbers.pop_back();
}

void Series::settle()
{
    numbers.insert(numbers.end(), latest.data(), latest.data() + latestCount);
    latestCount = 0;
}

std::size_t Paths::numberOf(std::string_view path)
{
    std::size_t number = m_followers[m_place];
    if (number == kNone || *m_texts[number] != path) {
        number = search(path);
        m_followers[m_place] = number;
    }
    m_place = number + 1;
    return number;
}

std::size_t Paths::search(std::string_view path)
{
    m_buffer = path;
    const auto [entry, isNew] = m_numbers.try_emplace(m_buffer, m_texts.size());
    if (isNew) {
        m_texts.push_back(&entry->first);
        m_followers.push_back(kNone);
    }
    return entry->second;
}

void Samples::add(std::size_t path, std::string_view value)
{
    if (path >= m_series.size())
        m_series.resize(path + 1);
    Series& series = m_series[path];
    if (series.lastSnapshot == m_snapshots)
        takeBack(series);
    else
        ++series.snapshots;
    series.lastSnapshot = m_snapshots;
    append(series, value);
}

void Samples::dropSnapshot()
{
    for (Series& series : m_series) {
        if (series.lastSnapshot != m_snapshots)
            continue;
        takeBack(series);
        --series.snapshots;
        series.lastSnapshot = 0;
    }
    --m_snapshots;
}

Series* Samples::find(std::size_t path)
{
    if (path >= m_series.size() || m_series[path].snapshots == 0)
        return nullptr;
    m_series[path].settle();
    return &m_series[path];
}

} // namespace compare
