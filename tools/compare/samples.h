#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace compare {

/// Every path of both sides, kept once, numbered from 0 in the order in which they were first met.
class Paths {
public:
    /// The next path that is asked for is the first of a file. Files of a run list their paths in one order,
    /// so that as a rule each is found behind the one before it, without a search.
    void beginFile() { m_place = 0; }
    std::size_t numberOf(std::string_view path);

    const std::string& operator[](std::size_t number) const { return *m_texts[number]; }
    std::size_t size() const { return m_texts.size(); }

private:
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    std::size_t search(std::string_view path);

    std::unordered_map<std::string, std::size_t> m_numbers;
    std::vector<const std::string*> m_texts;        ///< the keys of m_numbers, which stay where they are
    std::vector<std::size_t> m_followers = {kNone}; ///< by place: at the start of a file, behind path 0, ...
    std::size_t m_place = 0;
    std::string m_buffer;
};

enum class EKind : std::uint8_t { Missing, Number, Text };

/// What stood under one path in the snapshots of one side. A number or text takes 8 bytes.
///
/// Reading goes through all paths for each snapshot, so the latest numbers gather in the series itself: the
/// memory of thousands of vectors would have to be fetched anew for each of them.
struct Series {
    static constexpr std::size_t kLatest = 8;

    void push(double number);
    void pop();
    void settle(); ///< brings the latest numbers to the others

    std::array<double, kLatest> latest{};
    std::size_t latestCount = 0;
    std::vector<double> numbers;
    std::vector<std::uint64_t> texts; ///< their hashes
    std::string firstText;            ///< kept to be shown
    std::size_t snapshots = 0;        ///< in which the path stands, with or without a value
    std::size_t lastSnapshot = 0;     ///< the latest of them, from 1
    EKind lastKind = EKind::Missing;  ///< of its value there
};

/// One side: a run, or several runs taken as one.
class Samples {
public:
    void beginSnapshot() { ++m_snapshots; }
    /// A value of the snapshot begun last, as it stands in the file. If a snapshot has two values under one
    /// path, the later one counts.
    void add(std::size_t path, std::string_view value);
    /// Takes the snapshot begun last away again.
    void dropSnapshot();

    std::size_t snapshots() const { return m_snapshots; }
    /// Whole, all values settled. Null for a path that this side hasn't.
    Series* find(std::size_t path);

private:
    std::vector<Series> m_series; ///< by number of the path
    std::size_t m_snapshots = 0;
};

} // namespace compare
