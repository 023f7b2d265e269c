// SPDX-License-Identifier: MIT
// Many saves and reads of one term file at once: every read has to give one whole version. On a share two of these run
// at the same time, each through its own mount and with its own number.
//
// Usage: quillon_bench_save_storm FOLDER [SAVES [READS [NUMBER]]]
#include <cstdlib>
#include <string>

#include <fmt/format.h>

#include "support/save_storm.h"

using namespace quillon;

int main(int argc, char** argv) {
    if (argc < 2) {
        fmt::print(stderr, "usage: {} FOLDER [SAVES [READS [NUMBER]]]\n", argv[0]);
        return 2;
    }
    test::SaveStorm storm;
    storm.saves = argc > 2 ? std::stoul(argv[2]) : 10'000;
    storm.reads = argc > 3 ? std::stoul(argv[3]) : 100'000;
    storm.process = argc > 4 ? static_cast<unsigned>(std::stoul(argv[4])) : 0;
    const auto counts = test::runSaveStorm(NativePath(argv[1]) / "storm.dat", storm);
    fmt::print("saved {}, refused {}; read whole {}, absent {}, empty {}, torn {}\n", counts.saved, counts.refused,
               counts.whole, counts.absent, counts.empty, counts.torn);
    if (counts.refused != 0)
        fmt::print("one refusal: {}\n", counts.refusal);
    return counts.empty + counts.torn == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
