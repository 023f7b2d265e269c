// SPDX-License-Identifier: MIT
// How long it takes to read the heads that jobs have kept, and to tell what a term would let through, in seconds of the
// processor and by the clock.
//
// Usage: quillon_bench_guard FOLDER      (with the evidence of jobs, as quillon_bench_big_job makes it)

#include <atomic>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <string>

#include "editors/bench_heads.h"

namespace {

using namespace quillon;

template <typename Work>
auto timed(const char* what, Work work) {
    const auto start = std::chrono::steady_clock::now();
    const std::clock_t processor = std::clock();
    auto result = work();
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start;
    std::printf("%-24s %7.3f s, %7.3f s CPU\n", what, passed.count(),
                static_cast<double>(std::clock() - processor) / CLOCKS_PER_SEC);
    return result;
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::fputs("usage: quillon_bench_guard FOLDER\n", stderr);
        return 2;
    }
    const std::atomic<bool> goOn{false};
    const BenchWish wish{arguments[1], "jpg", "", {}};
    const Bench bench = timed("read", [&] { return loadBench(wish, goOn); });
    std::printf("%zu heads%s\n", bench.known.heads.size(), bench.cut ? ", there are more" : "");
    const HeaderTerm terms[] = {{PageText{"1"}, PageText{"pngpng"}, PageText{"T"}},
                                {PageText{"0"}, PageText{"pdfpdf"}, PageText{"T"}},
                                {PageText{"0"}, PageText{"00FF00AA00BB"}, PageText{"H"}}};
    for (const auto& term : terms) {
        const auto alarm = timed((term.offset.bytes + "," + term.term.bytes).c_str(),
                                 [&] { return judgeTerm(term, wish.extension, bench.known, bench.listed, {}, -1); });
        std::printf("    %s\n", falseAlarmText(alarm).c_str());
    }
    return 0;
}
