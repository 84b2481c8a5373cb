#include "shown_text.h"

namespace texts {

namespace {

bool isControl(unsigned char c)
{
    return c < 0x20 || c == 0x7f;
}

/// U+0080 to U+009F in UTF-8; one of them breaks lines, too.
bool isLateControl(std::string_view text, std::size_t at)
{
    return text.substr(at, 1) == "\xc2" && at + 1 < text.size() &&
           (static_cast<unsigned char>(text[at + 1]) & 0xe0u) == 0x80u;
}

bool isInsideCharacter(char c)
{
    return (static_cast<unsigned char>(c) & 0xc0u) == 0x80u;
}

} // namespace

std::string visible(std::string_view text)
{
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool late = isLateControl(text, i);
        result += late || isControl(static_cast<unsigned char>(text[i])) ? '?' : text[i];
        i += late ? 1 : 0;
    }
    return result;
}

std::string bounded(std::string_view text, std::size_t most)
{
    if (text.size() <= most)
        return std::string(text);
    std::size_t end = most;
    while (end > 0 && isInsideCharacter(text[end]))
        --end;
    return std::string(text.substr(0, end)) + "... (" + std::to_string(text.size()) + " characters)";
}

} // namespace texts
