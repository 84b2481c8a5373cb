#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace compare {

/// True if the pattern fits the whole path: "*" stands for any characters, "/" among them, "?" for one byte,
/// and a "\" takes the character behind it as it is.
bool matches(std::string_view pattern, std::string_view path);

/// What a user wants for some paths: of several patterns that fit one, the last counts.
template<typename Wish>
class Rules {
public:
    void add(std::string pattern, Wish wish) { m_rules.emplace_back(std::move(pattern), std::move(wish)); }

    /// Null if no pattern fits.
    const Wish* find(std::string_view path) const
    {
        for (auto rule = m_rules.rbegin(); rule != m_rules.rend(); ++rule)
            if (matches(rule->first, path))
                return &rule->second;
        return nullptr;
    }

    const std::vector<std::pair<std::string, Wish>>& all() const { return m_rules; }

private:
    std::vector<std::pair<std::string, Wish>> m_rules;
};

} // namespace compare
