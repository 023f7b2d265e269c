// SPDX-License-Identifier: MIT
#include "dbcheck/ends.h"

#include <algorithm>
#include <optional>
#include <random>

#include <fmt/format.h>

#include "platform/folders.h"
#include "testing/second_opinion/second_opinion.h"
#include "testing/second_opinion/source_end.h"

namespace quillon {

namespace {

double percentOf(std::size_t part, std::size_t whole) {
    return whole == 0 ? 100 : 100.0 * static_cast<double>(part) / static_cast<double>(whole);
}

// Empty for one that nothing is known of.
std::string formatOf(std::string_view head, std::uint64_t size) {
    const auto name = secondOpinionFormat(head);
    if (!name.empty() || !hasKnownEnd(head, size))
        return std::string(name);
    return head.starts_with("{\\rtf") ? "RTF" : "XML";
}

// What head and end say of a file as if it had `size` bytes.
struct Judgement {
    bool byHead = false;
    Result<Opinion> byEnd;
    [[nodiscard]] bool doubts() const { return byHead || (byEnd && byEnd->has_value()); }
};

class EndJudge {
public:
    explicit EndJudge(std::size_t cutsEach) : cutsEach_(cutsEach) {}

    void judge(const std::string& path) {
        const auto stamp = fileStamp(path);
        HeaderBytes bytes{};
        const auto read = stamp ? files_.readHead(path, bytes) : Result<std::size_t>(failure(stamp.error()));
        if (!read) {
            ++scores_.unread;
            return;
        }
        const std::string_view head(bytes.data(), *read);
        const std::string format = formatOf(head, stamp->size);
        if (stamp->size < 2 || format.empty())
            return;
        EndScore& score = scores_.formats[format];
        ++score.files;
        if (const auto whole = judged(path, head, stamp->size); whole.doubts()) {
            ++score.doubted;
            scores_.doubted.push_back(path + ": " + sentenceOf(whole, head, stamp->size));
            return;
        }
        for (std::size_t i = 0; i < cutsEach_; ++i) {
            const auto cut = judged(path, head, 1 + chance_() % (stamp->size - 1));
            ++score.cuts;
            score.foundHead += cut.byHead ? 1U : 0U;
            score.found += cut.doubts() ? 1U : 0U;
        }
    }

    [[nodiscard]] EndScores take() { return std::move(scores_); }

private:
    [[nodiscard]] Judgement judged(const std::string& path, std::string_view head, std::uint64_t size) {
        const std::string shorter(head.substr(0, std::min<std::uint64_t>(size, head.size())));
        Judgement judgement;
        judgement.byHead = secondOpinion(shorter, size).has_value();
        if (!judgement.byHead)
            judgement.byEnd = sourceEndOpinion(files_, {path, size, shorter});
        return judgement;
    }

    static std::string sentenceOf(const Judgement& judgement, std::string_view head, std::uint64_t size) {
        const auto doubt = judgement.byHead ? secondOpinion(head, size) : *judgement.byEnd;
        return std::string(doubtKindName(doubt->kind)) + ": " + doubt->sentence;
    }

    std::size_t cutsEach_;
    SourceFiles files_;
    std::mt19937_64 chance_{20};
    EndScores scores_;
};

// A link leads elsewhere, or in a circle.
bool isOwnFolder(const NativePath& path) {
    return isFolder(path) && realPath(path) == path;
}

void judgeBelow(const NativePath& folder, EndJudge& judge) {
    auto names = listEntries(folder);
    if (!names)
        return;
    std::ranges::sort(*names);
    for (const auto& name : *names) {
        const NativePath path = folder / name;
        if (isOwnFolder(path))
            judgeBelow(path, judge);
        else if (isRegularFile(path))
            judge.judge(path.native());
    }
}

}  // namespace

std::size_t EndScores::files() const {
    std::size_t sum = 0;
    for (const auto& [name, score] : formats) sum += score.files;
    return sum;
}

EndScores scoreEnds(const NativePath& folder, std::size_t cutsEach) {
    EndJudge judge(cutsEach);
    judgeBelow(realPath(folder), judge);
    return judge.take();
}

std::string endTable(const EndScores& scores) {
    std::string table =
        "| Format | Files | Doubted | Cuts found by the head | Cuts found with the end |\n| --- | --- | --- | --- | --- |\n";
    for (const auto& [name, score] : scores.formats)
        table += fmt::format("| {} | {} | {} | {:.0f} % | {:.1f} % |\n", name, score.files, score.doubted,
                             percentOf(score.foundHead, score.cuts), percentOf(score.found, score.cuts));
    return table;
}

}  // namespace quillon
