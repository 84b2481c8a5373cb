#include "format.h"

#include <cstdio>
#include <cstring>

namespace Orv {

namespace {

using EKind = FormatArgument::EKind;
using ESize = FormatArgument::ESize;

constexpr int kMostDigits = 4; ///< of a width or precision: 9999 characters are enough for a number

/// Translated texts name the argument that they want: there is only one. Windows knows no such positions.
const char* skipArgumentPosition(const char* position)
{
#ifdef _WIN32
    return position;
#else
    return position[0] == '1' && position[1] == '$' ? position + 2 : position;
#endif
}

const char* skipFlags(const char* position)
{
    return position + std::strspn(position, "-+ #0'");
}

/// Null if the number is absurdly large or comes from an argument.
const char* skipDigits(const char* position)
{
    const std::size_t digits = std::strspn(position, "0123456789");
    return digits > kMostDigits || position[digits] == '*' ? nullptr : position + digits;
}

const char* skipPrecision(const char* position)
{
    return *position == '.' ? skipDigits(position + 1) : position;
}

/// Lengths that stand for types of the same size and kind are told as one.
const char* readLength(const char* position, ESize& size)
{
    switch (*position) {
    case 'h':
        return position + (position[1] == 'h' ? 2 : 1);
    case 'l':
        size = position[1] == 'l' ? ESize::LongLong : ESize::Long;
        return position + (position[1] == 'l' ? 2 : 1);
    case 'j':
    case 'z':
    case 't':
        size = sizeof(std::size_t) == sizeof(long) ? ESize::Long : ESize::LongLong;
        return position + 1;
    case 'L':
        size = ESize::LongDouble;
        return position + 1;
    default:
        return position;
    }
}

FormatArgument conversionArgument(char conversion, ESize size)
{
    if (conversion == '\0')
        return {EKind::Unfit};
    // Some C libraries read a long double for "%llf", others a double.
    if (std::strchr("aAeEfFgG", conversion))
        return {size == ESize::LongLong ? EKind::Unfit : EKind::Floating,
                size == ESize::LongDouble ? size : ESize::Default};
    if (size == ESize::LongDouble)
        return {EKind::Unfit};
    if (std::strchr("di", conversion) || (conversion == 'c' && size == ESize::Default))
        return {EKind::Signed, size};
    if (std::strchr("ouxX", conversion))
        return {EKind::Unsigned, size};
    return {EKind::Unfit};
}

/// Reads the conversion behind a '%' and moves on past it.
FormatArgument readConversion(const char*& position)
{
    ESize size = ESize::Default;
    const char* end = skipDigits(skipFlags(skipArgumentPosition(position)));
    if (end)
        end = skipPrecision(end);
    if (!end)
        return {EKind::Unfit};
    end = readLength(end, size);
    const FormatArgument argument = conversionArgument(*end, size);
    position = end + (*end != '\0');
    return argument;
}

} // namespace

bool formatInto(std::string& text, const char* format, std::va_list arguments)
{
    char buffer[256];
    std::va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(buffer, sizeof(buffer), format, arguments);
    text.clear();
    if (length > 0 && static_cast<std::size_t>(length) < sizeof(buffer)) {
        text.assign(buffer, static_cast<std::size_t>(length));
    } else if (length > 0) {
        text.resize(static_cast<std::size_t>(length));
        std::vsnprintf(text.data(), text.size() + 1, format, again);
    }
    va_end(again);
    return length >= 0;
}

bool formatInto(std::string& text, const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const bool done = formatInto(text, format, arguments);
    va_end(arguments);
    return done;
}

std::string orv_format(const char* format, ...)
{
    std::string text;
    std::va_list arguments;
    va_start(arguments, format);
    formatInto(text, format, arguments);
    va_end(arguments);
    return text;
}

FormatArgument numberArgument(const char* format)
{
    FormatArgument found;
    for (const char* position = std::strchr(format, '%'); position; position = std::strchr(position, '%')) {
        ++position;
        if (*position == '%') {
            ++position;
            continue;
        }
        const FormatArgument argument = readConversion(position);
        if (argument.kind == EKind::Unfit || found.kind != EKind::None)
            return {EKind::Unfit};
        found = argument;
    }
    return found;
}

} // namespace Orv
