// SPDX-License-Identifier: MIT
#include "dbcheck/doubts.h"

#include <algorithm>
#include <random>

#include <fmt/format.h>

#include "dbcheck/table_file.h"
#include "testing/second_opinion/second_opinion.h"

namespace quillon {

namespace {

double percentOf(std::size_t part, std::size_t whole, double ofNone) {
    return whole == 0 ? ofNone : 100.0 * static_cast<double>(part) / static_cast<double>(whole);
}

std::string_view headOf(const Sample& sample) {
    const auto bytes = std::min<std::uint64_t>(sample.trueSize, sample.head.size());
    return {sample.head.data(), static_cast<std::size_t>(bytes)};
}

}  // namespace

double DoubtScore::foundPercent() const {
    return percentOf(found, cuts, 100);
}

double DoubtScores::doubtedPercent() const {
    std::size_t known = 0;
    for (const auto& [name, score] : formats) known += score.samples;
    return percentOf(doubted.size(), known, 0);
}

DoubtScores scoreDoubts(const std::vector<Sample>& samples, const std::map<std::string, std::string>& odd,
                        std::size_t cutsEach) {
    DoubtScores scores;
    std::mt19937_64 chance(20);
    for (const auto& sample : samples) {
        ++scores.samples;
        const auto head = headOf(sample);
        const auto name = secondOpinionFormat(head);
        const auto doubt = secondOpinion(head, sample.trueSize);
        if (odd.contains(sample.path)) {
            ++scores.odd;
            scores.oddDoubted += doubt ? 1U : 0U;
            continue;
        }
        if (name.empty())
            continue;
        auto& score = scores.formats[std::string(name)];
        ++score.samples;
        if (doubt) {
            ++score.doubted;
            scores.doubted.push_back(
                fmt::format("{}: {}: {}: {}", sample.path, name, doubtKindName(doubt->kind), doubt->sentence));
            continue;
        }
        for (std::size_t i = 0; sample.trueSize > 1 && i < cutsEach; ++i) {
            ++score.cuts;
            score.found += secondOpinion(head, 1 + chance() % (sample.trueSize - 1)) ? 1U : 0U;
        }
    }
    return scores;
}

Result<std::map<std::string, std::string>> readOddSamples(const NativePath& file) {
    const auto table = TableFile::read(file);
    if (!table)
        return failure(table.error());
    if (auto complete = table->require({"path", "reason"}); !complete)
        return failure(complete.error());
    std::map<std::string, std::string> odd;
    for (std::size_t row = 0; row < table->rowCount(); ++row)
        odd.emplace(table->field(row, "path"), table->field(row, "reason"));
    return odd;
}

std::string doubtTable(const DoubtScores& scores) {
    std::string table = "| Format | Samples | Doubted | Cuts found |\n| --- | --- | --- | --- |\n";
    for (const auto& [name, score] : scores.formats)
        table += fmt::format("| {} | {} | {} | {:.0f} % |\n", name, score.samples, score.doubted, score.foundPercent());
    return table;
}

}  // namespace quillon
