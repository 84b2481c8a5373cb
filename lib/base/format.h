#pragma once

#include <cstdarg>
#include <string>

namespace Orv {

/// Formats in the manner of printf. A format that can't be carried out gives an empty text.
std::string orv_format(const char* format, ...);

/// The same into `text`, which keeps its memory. False if the format can't be carried out.
bool formatInto(std::string& text, const char* format, ...);
bool formatInto(std::string& text, const char* format, std::va_list arguments);

/// What a printf format reads from its arguments.
struct FormatArgument {
    enum class EKind : unsigned char { None, Signed, Unsigned, Floating, Unfit };
    enum class ESize : unsigned char { Default, Long, LongLong, LongDouble };

    EKind kind = EKind::None;
    ESize size = ESize::Default;
};

/// Looks at a format that is meant for one number. `Unfit` if it reads anything but a single number (a text,
/// a pointer, a width, a second argument), writes, or asks for a text of absurd width.
FormatArgument numberArgument(const char* format);

} // namespace Orv
