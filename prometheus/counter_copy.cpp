#include "counter_copy.h"

#include <statistics/system.h>

#include <charconv>
#include <cmath>

namespace statistics::prometheus_export {

namespace {

template<typename Value>
void append(std::string& text, Value value)
{
    char digits[32];
    text.append(digits, std::to_chars(digits, digits + sizeof(digits), value).ptr);
}

void appendDecimal(std::string& text, float value)
{
    if (std::isnan(value))
        text += "NaN";
    else if (std::isinf(value))
        text += value > 0 ? "+Inf" : "-Inf";
    else
        append(text, value);
}

} // namespace

Number::Number(const CounterValue& value)
{
    if (value.isDecimal()) {
        m_decimal = value.toFloat();
        m_kind = EKind::Decimal;
    } else if (value.isInt()) {
        m_int = value.toInt();
        m_kind = EKind::Int;
    } else if (value.isUInt()) {
        m_uint = value.toUInt();
        m_kind = EKind::UInt;
    }
}

void Number::print(std::string& text) const
{
    if (m_kind == EKind::Decimal)
        appendDecimal(text, m_decimal);
    else if (m_kind == EKind::Int)
        append(text, m_int);
    else if (m_kind == EKind::UInt)
        append(text, m_uint);
}

void CounterCopy::clear()
{
    samples.clear();
    texts.clear();
}

void CounterCopy::add(std::uint32_t name, const CounterReading& reading)
{
    Sample& sample = samples.emplace_back();
    sample.name = name;
    sample.value = Number(reading.value);
    sample.isText = reading.value.isString();
    if (sample.isText) {
        sample.text = static_cast<std::uint32_t>(texts.size());
        texts.push_back(reading.value.toString(nullptr));
    }
    sample.hasLimits = reading.min != nullptr;
    sample.outside = reading.outside;
    if (sample.hasLimits) {
        sample.lower = Number(*reading.min);
        sample.upper = Number(*reading.max);
    }
}

void CounterReader::read(CounterCopy& copy)
{
    copy.clear();
    const System* system = System::instance();
    if (system && system->revision() == m_revision)
        readNamed(copy);
    else if (system)
        readWithNames(copy);
}

/// Getters may change the tree: the revision is that of before, so that the names are read again then.
void CounterReader::readWithNames(CounterCopy& copy)
{
    const System& system = *System::instance();
    const auto names = std::make_shared<Names>();
    const std::uint64_t revision = system.revision();
    system.forEachCounter([&](const CounterReading& reading) {
        copy.add(static_cast<std::uint32_t>(names->size()), reading);
        names->push_back({reading.id, reading.path});
    });
    copy.names = names;
    m_names = names;
    m_revision = revision;
}

/// The walk goes through the counters in the order of their names, and leaves out what getters remove.
void CounterReader::readNamed(CounterCopy& copy) const
{
    std::uint32_t name = 0;
    const NamedCounter* names = m_names->data();
    System::instance()->forEachCounter(
        [&](const CounterReading& reading) {
            while (names[name].id != reading.id)
                ++name;
            copy.add(name++, reading);
        },
        false);
    copy.names = m_names;
}

} // namespace statistics::prometheus_export
