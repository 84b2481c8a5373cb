#include "support/replay.h"

#include "../fuzz/targets.h"

namespace {

TEST(FuzzSeeds, OfSnapshotFilesDoNoHarm)
{
    test::replay("snapshot_file", fuzz::snapshotFile);
}

TEST(FuzzSeeds, OfHostsAndUsersDoNoHarm)
{
    test::replay("panel", fuzz::panel);
}

} // namespace
