// SPDX-License-Identifier: MIT
#include "job/self_check.h"

#include <numeric>

#include <fmt/format.h>

#include "text/numbers.h"

namespace quillon {

namespace {

// One count, and what it counts, behind the figure: "files were found".
struct Side {
    std::int64_t count;
    const char* what;
};

class Comparison {
public:
    void same(const Side& left, const Side& right) {
        if (left.count != right.count)
            gaps_.push_back(
                fmt::format("{} {}, {} {}", grouped(left.count), left.what, grouped(right.count), right.what));
    }
    [[nodiscard]] std::vector<std::string> take() { return std::move(gaps_); }

private:
    std::vector<std::string> gaps_;
};

std::int64_t sumOf(const ByGrade<std::int32_t>& grades) {
    return std::accumulate(grades.values.begin(), grades.values.end(), std::int64_t{0});
}

}  // namespace

std::vector<std::string> gapsOf(const PassFigures& passes, const JobCounters& counters) {
    Comparison comparison;
    comparison.same({counters.files, "files were found"},
                    {passes.raw.written + passes.raw.lost, "rows of the raw list were written or lost"});
    if (passes.testing != PassEnd::NotRun) {
        if (passes.testing == PassEnd::Whole)
            comparison.same({passes.raw.written, "rows of the raw list were written"},
                            {passes.rowsRead, "rows of it were read"});
        comparison.same({passes.rowsRead, "rows were read"}, {sumOf(counters.grades), "files have a grade"});
        comparison.same({passes.rowsRead, "rows were read"},
                        {passes.list.written + passes.list.lost, "rows of the list were written or lost"});
    }
    if (passes.copying == PassEnd::Whole)
        comparison.same({passes.list.written - passes.leftOut,
                         passes.leftOut == 0 ? "rows stand in the list" : "rows of the list were asked for"},
                        {passes.copies + counters.copyErrors, "files were copied or have a copy error"});
    return comparison.take();
}

}  // namespace quillon
