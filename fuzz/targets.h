#pragma once

// What the fuzzers feed with random bytes. The tests replay all seeds through the same functions.

#include <cstddef>
#include <cstdint>

namespace fuzz {

/// The bytes are a snapshot file, found by a store and brought into its comparison.
void snapshotFile(const std::uint8_t* data, std::size_t size);

/// The bytes are the snapshots of two runs, which are compared in both directions.
void compareRuns(const std::uint8_t* data, std::size_t size);

/// The bytes are a script of host calls, of what functors do, and of the user's mouse.
void panel(const std::uint8_t* data, std::size_t size);

} // namespace fuzz
