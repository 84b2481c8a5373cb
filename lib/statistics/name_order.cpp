#include "name_order.h"

#include <algorithm>

namespace statistics {

namespace {

bool isDigit(char byte)
{
    return byte >= '0' && byte <= '9';
}

/// Takes the digits that `text` begins with, and gives those behind leading zeros.
std::string_view takeNumber(std::string_view& text)
{
    const auto end = std::find_if_not(text.begin(), text.end(), isDigit);
    std::string_view digits = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(digits.size());
    digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
    return digits;
}

/// Below zero if the next number or byte of `left` comes before that of `right`; takes it from both.
int compareNext(std::string_view& left, std::string_view& right)
{
    if (isDigit(left.front()) && isDigit(right.front())) {
        const std::string_view a = takeNumber(left);
        const std::string_view b = takeNumber(right);
        return a.size() == b.size() ? a.compare(b) : (a.size() < b.size() ? -1 : 1);
    }
    const int order = left.substr(0, 1).compare(right.substr(0, 1));
    left.remove_prefix(1);
    right.remove_prefix(1);
    return order;
}

} // namespace

bool isNameBefore(std::string_view left, std::string_view right)
{
    std::string_view a = left;
    std::string_view b = right;
    while (!a.empty() && !b.empty())
        if (const int order = compareNext(a, b); order != 0)
            return order < 0;
    return a.empty() == b.empty() ? left < right : a.empty();
}

} // namespace statistics
