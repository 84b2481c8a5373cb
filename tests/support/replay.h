#pragma once

// What the fuzzers were seeded with, and what once made one of them fail.

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace test {

inline void replay(const std::string& folder, void (*target)(const std::uint8_t*, std::size_t))
{
    std::size_t count = 0;
    for (const auto& seed : std::filesystem::directory_iterator(STATISTICS_FUZZ_SEEDS "/" + folder)) {
        SCOPED_TRACE(seed.path().filename().string());
        std::ifstream file(seed.path(), std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(file), {}};
        target(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
        ++count;
    }
    EXPECT_GT(count, 0u);
}

} // namespace test
