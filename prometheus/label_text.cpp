#include "label_text.h"

#include <cstddef>

namespace statistics::prometheus_export {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

/// The first bytes of a character tell its length and, for some, a narrower range of the second byte: what
/// lies outside is overlong, half of a pair, or beyond the last character.
struct Lead {
    unsigned char first;
    unsigned char last;
    unsigned char length;
    unsigned char low;
    unsigned char high;
};
constexpr Lead kLeads[] = {
    {0x01, 0x7F, 1, 0x80, 0xBF}, {0xC2, 0xDF, 2, 0x80, 0xBF}, {0xE0, 0xE0, 3, 0xA0, 0xBF},
    {0xE1, 0xEC, 3, 0x80, 0xBF}, {0xED, 0xED, 3, 0x80, 0x9F}, {0xEE, 0xEF, 3, 0x80, 0xBF},
    {0xF0, 0xF0, 4, 0x90, 0xBF}, {0xF1, 0xF3, 4, 0x80, 0xBF}, {0xF4, 0xF4, 4, 0x80, 0x8F}};

bool isBetween(char character, unsigned char low, unsigned char high)
{
    const auto byte = static_cast<unsigned char>(character);
    return byte >= low && byte <= high;
}

bool isTail(std::string_view text, const Lead& lead)
{
    if (text.size() < lead.length || (lead.length > 1 && !isBetween(text[1], lead.low, lead.high)))
        return false;
    for (std::size_t index = 2; index < lead.length; ++index)
        if (!isBetween(text[index], 0x80, 0xBF))
            return false;
    return true;
}

/// Bytes of the character that the text begins with; 0 if it is none.
std::size_t characterLength(std::string_view text)
{
    for (const Lead& lead : kLeads)
        if (isBetween(text[0], lead.first, lead.last))
            return isTail(text, lead) ? lead.length : 0;
    return 0;
}

} // namespace

std::string repaired(std::string_view text)
{
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const std::size_t length = characterLength(text);
        result += length ? text.substr(0, length) : kReplacement;
        text.remove_prefix(length ? length : 1);
    }
    return result;
}

void appendLabel(std::string& line, std::string_view name, std::string_view value)
{
    line.append(name).append("=\"");
    for (const char character : value) {
        if (character == '\\' || character == '"')
            line += '\\';
        if (character == '\n')
            line += "\\n";
        else
            line += character;
    }
    line += '"';
}

bool matches(std::string_view pattern, std::string_view text)
{
    std::size_t at = 0;
    std::size_t place = 0;
    std::size_t star = std::string_view::npos; // the last "*", which takes one byte more at each failure
    std::size_t taken = 0;
    while (place < text.size()) {
        if (at < pattern.size() && pattern[at] == '*') {
            star = at++;
            taken = place;
        } else if (at < pattern.size() && (pattern[at] == '?' || pattern[at] == text[place])) {
            ++at;
            ++place;
        } else if (star != std::string_view::npos) {
            at = star + 1;
            place = ++taken;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', at) == std::string_view::npos;
}

} // namespace statistics::prometheus_export
