#pragma once

// Collects the library's reports while it lives, instead of the handler that was set before.

#include <statistics/report.h>

#include <string>
#include <utility>
#include <vector>

namespace test {

class Reports {
public:
    Reports()
        : m_previous(statistics::setReportHandler([this](const char* text) { m_texts.emplace_back(text); }))
    {
    }
    ~Reports() { statistics::setReportHandler(std::move(m_previous)); }
    Reports(const Reports&) = delete;
    Reports& operator=(const Reports&) = delete;

    /// Whole, as the handler got them.
    const std::vector<std::string>& texts() const { return m_texts; }

    /// What failed: the first line of each report behind "ASSERTION FAILED: ".
    std::vector<std::string> expressions() const
    {
        const std::string intro = "ASSERTION FAILED: ";
        std::vector<std::string> result;
        for (const std::string& text : m_texts) {
            const std::string line = text.substr(0, text.find("\r\n"));
            result.push_back(line.compare(0, intro.size(), intro) == 0 ? line.substr(intro.size()) : line);
        }
        return result;
    }

    /// The expressions since the last call, so that one recorder serves a table of cases.
    std::vector<std::string> take()
    {
        std::vector<std::string> result = expressions();
        m_texts.clear();
        return result;
    }

private:
    std::vector<std::string> m_texts;
    statistics::ReportHandler m_previous;
};

} // namespace test
