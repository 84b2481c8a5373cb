#include "filter.h"

#include "path.h"
#include "render.h"
#include "tree.h"

#include <algorithm>
#include <utility>

namespace statistics {

namespace {

constexpr std::string_view kBlanks = " \t\n\v\f\r";

/// Whatever the host's locale.
char toLower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Takes the first word off a text; empty if there are only blanks left.
std::string takeWord(std::string_view& text)
{
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    std::string word(text.substr(0, text.find_first_of(kBlanks)));
    text.remove_prefix(word.size());
    std::transform(word.begin(), word.end(), word.begin(), toLower);
    return word;
}

void dropRepeated(std::vector<std::string>& words)
{
    std::sort(words.begin(), words.end());
    words.erase(std::unique(words.begin(), words.end()), words.end());
}

/// Where to look for a word in a path, the first `known` bytes of which don't hold it.
std::size_t firstPlace(const std::string& word, std::size_t known)
{
    return known < word.size() ? 0 : known - word.size() + 1;
}

} // namespace

void Filter::set(const std::string& text)
{
    if (text == m_text)
        return;
    std::string kept = text;
    Words wanted;
    Words unwanted;
    std::string_view rest = kept;
    for (std::string word = takeWord(rest); !word.empty(); word = takeWord(rest))
        if (word[0] != '-')
            wanted.push_back(std::move(word));
        else if (word.size() > 1)
            unwanted.push_back(word.substr(1));
    dropRepeated(wanted);
    dropRepeated(unwanted);
    m_text.swap(kept);
    m_wanted.swap(wanted);
    m_unwanted.swap(unwanted);
    m_revision = 0;
    ++m_edition;
}

void Filter::refresh(const Tree& tree, const Render& render)
{
    if (!isOn() || m_revision == tree.revision())
        return;
    m_revision = 0; // until it is done: memory may fail
    ++m_version;
    m_marks.assign(tree.m_nodes.size(), Mark{0});
    m_matchCount = 0;
    matchAll(tree, render);
    m_revision = tree.revision();
}

/// Parents first, without calling itself: no tree is too deep.
void Filter::matchAll(const Tree& tree, const Render& render)
{
    m_levels.assign(1, {tree.m_nodes.begin(), 0, 0, 0});
    while (!m_levels.empty()) {
        Level& level = m_levels.back();
        const ChildList& children = tree.m_nodes[level.node].children;
        if (level.next == children.size()) {
            m_levels.pop_back();
            continue;
        }
        const unsigned child = children[level.next++];
        if (child != INVALID_ID)
            look(tree, render, child);
    }
}

void Filter::look(const Tree& tree, const Render& render, unsigned node)
{
    const Level above = m_levels.back();
    std::size_t found = above.found;
    if (!isDecided(above)) {
        appendToPath(above.pathLength, render.itemName(tree.item(node)));
        if (holdsUnwanted(above))
            return;
        found = countFound(above);
    }
    if (found == m_wanted.size())
        markMatch(tree, node);
    if (!tree.m_nodes[node].children.empty())
        m_levels.push_back({node, 0, m_path.size(), found});
}

/// True if everything below a node matches, whatever it is called.
bool Filter::isDecided(const Level& above) const
{
    return m_unwanted.empty() && above.found == m_wanted.size();
}

void Filter::appendToPath(std::size_t length, std::string_view name)
{
    m_path.resize(length);
    appendName(m_path, name);
    const auto added = m_path.begin() + static_cast<std::ptrdiff_t>(length);
    std::transform(added, m_path.end(), added, toLower);
}

/// The first word that the path above doesn't hold needs some of the new name; the words behind it haven't
/// been looked for yet.
std::size_t Filter::countFound(const Level& above) const
{
    std::size_t found = above.found;
    while (found < m_wanted.size()) {
        const std::string& word = m_wanted[found];
        const std::size_t from = found == above.found ? firstPlace(word, above.pathLength) : 0;
        if (m_path.find(word, from) == std::string::npos)
            break;
        ++found;
    }
    return found;
}

bool Filter::holdsUnwanted(const Level& above) const
{
    return std::any_of(m_unwanted.begin(), m_unwanted.end(), [&](const std::string& word) {
        return m_path.find(word, firstPlace(word, above.pathLength)) != std::string::npos;
    });
}

void Filter::markMatch(const Tree& tree, unsigned node)
{
    m_marks[node] |= kMatches;
    ++m_matchCount;
    bool shown = false;
    while (!shown && (node = tree.m_nodes[node].parent) != INVALID_ID) {
        shown = m_marks[node] != 0;
        m_marks[node] |= kLeads;
    }
}

} // namespace statistics
