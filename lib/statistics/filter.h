#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace statistics {

class Render;
class Tree;

/// Which nodes of a tree are shown: those whose path holds all of the words and none of those after "-", and
/// what leads to them. What is below a match matches, too, unless a word after "-" turns up there. Names are
/// compared byte by byte but for the case of ASCII letters, so any bytes may stand in words and names.
///
/// The answer is kept until the words or the tree's nodes change; what is asked in between costs a look into
/// an array.
class Filter {
public:
    /// Words separated by ASCII blanks; "-" alone is none.
    void set(const std::string& text);
    const std::string& text() const { return m_text; }
    /// False without any word: then everything is shown.
    bool isOn() const { return !m_wanted.empty() || !m_unwanted.empty(); }
    /// Another number for each text.
    std::uint64_t edition() const { return m_edition; }

    /// Looks for matches anew if the words or the tree have changed since.
    void refresh(const Tree& tree, const Render& render);
    /// Another number for each time that it looked.
    std::uint64_t version() const { return m_version; }
    // As of the last `refresh`.
    bool matches(unsigned node) const { return (markOf(node) & kMatches) != 0; }
    /// True if something below the node is shown.
    bool leads(unsigned node) const { return (markOf(node) & kLeads) != 0; }
    bool shows(unsigned node) const { return markOf(node) != 0; }

    /// The line on top of the panel, inside an ImGui frame: a field for the text, a button that clears it,
    /// the number of matches. Escape clears it, too, while the panel is in focus.
    void drawLine(const Tree& tree, const Render& render);

private:
    using Words = std::vector<std::string>;
    using Mark = std::uint8_t;

    static constexpr Mark kMatches = 1;
    static constexpr Mark kLeads = 2;

    /// A node whose children are being looked at.
    struct Level {
        unsigned node;
        std::size_t next;       ///< position of the child whose turn comes
        std::size_t pathLength; ///< bytes
        std::size_t found;      ///< wanted words from the first on that the path holds
    };

    Mark markOf(unsigned node) const { return node < m_marks.size() ? m_marks[node] : Mark{0}; }
    void matchAll(const Tree& tree, const Render& render);
    void look(const Tree& tree, const Render& render, unsigned node);
    bool isDecided(const Level& above) const;
    void appendToPath(std::size_t length, std::string_view name);
    std::size_t countFound(const Level& above) const;
    bool holdsUnwanted(const Level& above) const;
    void markMatch(const Tree& tree, unsigned node);
    void drawField();
    void drawMatchCount() const;

    std::string m_text;
    Words m_wanted; ///< in lower case, each once
    Words m_unwanted;
    std::uint64_t m_edition = 0;
    std::uint64_t m_revision = 0; ///< of the tree that was looked through; 0 is none's
    std::uint64_t m_version = 0;
    std::vector<Mark> m_marks; ///< by node
    std::size_t m_matchCount = 0;
    std::string m_field;              ///< what the panel's field shows
    std::uint64_t m_fieldEdition = 0; ///< of the text that it was made from
    // Memory for a refresh.
    std::vector<Level> m_levels;
    std::string m_path; ///< in lower case
};

} // namespace statistics
