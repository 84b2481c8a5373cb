#pragma once

#include <filesystem>
#include <string>

namespace statistics {

/// Paths as texts are UTF-8 on Windows, like all that ImGui shows, whatever code page and locale the host
/// has. Elsewhere they are the bytes that the file system knows. A text that can't be converted throws
/// `std::system_error`.
inline std::filesystem::path toPath(const std::string& text)
{
#if defined(_WIN32) && defined(__cpp_char8_t)
    return std::u8string(text.begin(), text.end());
#elif defined(_WIN32)
    return std::filesystem::u8path(text);
#else
    return text;
#endif
}

inline std::string toText(const std::filesystem::path& path)
{
#ifdef _WIN32
    const auto text = path.u8string();
    return {text.begin(), text.end()};
#else
    return path.string();
#endif
}

} // namespace statistics
