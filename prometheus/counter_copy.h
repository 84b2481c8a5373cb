#pragma once

#include <statistics/reading.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace statistics::prometheus_export {

/// A number in the kind in which the host gave it, in 8 bytes. Texts and `Empty` are no numbers.
class Number {
public:
    Number() = default;
    explicit Number(int value) : m_int(value), m_kind(EKind::Int) {}
    explicit Number(const CounterValue& value);

    explicit operator bool() const { return m_kind != EKind::None; }
    /// Appends the shortest text that reads back as the same number, spelled as the exposition format does.
    void print(std::string& text) const;

private:
    enum class EKind : std::uint32_t { None, Int, UInt, Decimal };

    union {
        int m_int = 0;
        unsigned m_uint;
        float m_decimal;
    };
    EKind m_kind = EKind::None;
};

/// A counter's place in the tree at one revision of it.
struct NamedCounter {
    unsigned id;
    std::string path;
};
using Names = std::vector<NamedCounter>;

/// All counters at one moment, compact: the frame writes it, an exporter's thread makes a page of it.
struct CounterCopy {
    struct Sample {
        std::uint32_t name; ///< index in `names`
        std::uint32_t text; ///< index in `texts`, if `isText`
        Number value;
        Number lower;
        Number upper;
        bool isText;
        bool hasLimits;
        bool outside;
    };

    void clear();
    void add(std::uint32_t name, const CounterReading& reading);

    std::uint64_t number = 0; ///< of the copy; 0 before the first
    std::shared_ptr<const Names> names = std::make_shared<const Names>();
    std::vector<Sample> samples;
    std::vector<std::string> texts;
    std::chrono::steady_clock::time_point taken = std::chrono::steady_clock::now();
    std::chrono::duration<double> cost{0};
};

/// Reads the counters of the `System`, if there is one. Names are read only when items came or went.
class CounterReader {
public:
    /// Runs the getters of all counters.
    void read(CounterCopy& copy);

private:
    // Both run the getters.
    void readWithNames(CounterCopy& copy);
    void readNamed(CounterCopy& copy) const;

    std::shared_ptr<const Names> m_names = std::make_shared<const Names>();
    std::uint64_t m_revision = 0; ///< that the names belong to; no tree has 0
};

} // namespace statistics::prometheus_export
