#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace demo {

struct MappingRow {
    std::uint64_t key = 0; ///< address of the first byte
    std::string path;      ///< as the kernel writes it; empty for anonymous memory
    std::string access;
    double sizeMiB = 0;
    double residentMiB = 0;
    double dirtyMiB = 0; ///< changed and this process's alone
    std::string text;    ///< the kernel's entry
};

/// The memory mappings in a text like /proc/self/smaps.
std::vector<MappingRow> parseMappings(const std::string& text);

} // namespace demo
