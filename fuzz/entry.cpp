// The fuzzer's way in; the build names the target.

#include "targets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::STATISTICS_FUZZ_TARGET(data, size);
    return 0;
}
