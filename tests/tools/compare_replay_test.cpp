#include "support/replay.h"

#include "../../fuzz/targets.h"

namespace {

TEST(FuzzSeeds, OfComparedRunsDoNoHarm)
{
    test::replay("compare", fuzz::compareRuns);
}

} // namespace
