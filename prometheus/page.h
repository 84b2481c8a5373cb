#pragma once

#include "counter_copy.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace statistics::prometheus_export {

using Labels = std::map<std::string, std::string>;

/// What a copy looks like to a server.
struct Page {
    std::uint64_t number = 0; ///< of the copy
    std::chrono::steady_clock::time_point taken;
    std::chrono::duration<double> cost{0};
    std::size_t counters = 0;                   ///< on the page
    std::shared_ptr<const std::string> samples; ///< the families of the counters, in the exposition format
};

/// Makes pages of copies. The labels of each counter are written once for all copies with the same names.
///
/// The counters' lines are written here and not by prometheus-cpp's serializer, which takes ten times as long
/// for them.
class PageWriter {
public:
    PageWriter(Labels labels, std::vector<std::string> include, std::vector<std::string> exclude);

    Page write(const CounterCopy& copy);
    /// The families about the copy itself, at this moment.
    std::string describe(const Page& page) const;

private:
    void writeLabels(const Names& names);
    bool isChosen(const std::string& path) const;
    bool isOffered(const CounterCopy::Sample& sample) const;
    void writeNumbers(std::string& page, const CounterCopy& copy) const;
    void writeTexts(std::string& page, const CounterCopy& copy) const;

    const Labels m_labels; ///< as UTF-8
    const std::vector<std::string> m_include;
    const std::vector<std::string> m_exclude;
    std::shared_ptr<const Names> m_names;  ///< that the labels below belong to
    std::vector<std::string> m_labelTexts; ///< by name, without the closing brace; empty if it isn't offered
    std::size_t m_pageSize = 0;            ///< bytes that the next page probably has
};

} // namespace statistics::prometheus_export
