// SPDX-License-Identifier: MIT
// Both jobs go by in the order of their walks, and what differs is kept. A job that is not in that order cannot: then
// the first one stands in a table whole.
#include "answers/job_comparison.h"

#include <algorithm>
#include <compare>
#include <ranges>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "answers/file_table.h"
#include "answers/files_in_order.h"

namespace quillon {

namespace {

// What the second job has under the path of a file of the first.
struct Now {
    bool seen = false;
    std::int64_t size = 0;
    std::optional<Grade> grade;
};

// How much of a file there is: nothing, something that cannot be judged, a header of another format, a good header.
int worth(const std::optional<Grade>& grade) {
    if (!grade)
        return 1;
    switch (*grade) {
        case Grade::Good:
            return 3;
        case Grade::CommonHeader:
            return 2;
        case Grade::Corrupt:
        case Grade::AccessError:
        case Grade::ZeroBytes:
            return 0;
        default:
            return 1;
    }
}

// `before`: what has a size and a grade.
Change changeOf(const auto& before, const Now& now) {
    const int gain = worth(now.grade) - worth(before.grade);
    if (gain != 0)
        return gain > 0 ? Change::Better : Change::Worse;
    return before.size == now.size ? Change::Same : before.size < now.size ? Change::Better : Change::Worse;
}

using Numbers = std::vector<std::size_t>;

Numbers byPath(const FileTable& files, Numbers numbers) {
    std::vector<std::pair<std::string, std::size_t>> paths;
    paths.reserve(numbers.size());
    for (const auto number : numbers) paths.emplace_back(files.path(number), number);
    std::ranges::sort(paths);
    std::ranges::transform(paths, numbers.begin(), &std::pair<std::string, std::size_t>::second);
    return numbers;
}

// What tells that two paths hold the same file, by number: its size and its head, or its name where no head is known.
// Heads stand together in the order of the ids.
using Keys = std::unordered_map<std::size_t, std::string>;

Result<Keys> keysOf(JobAnswers& job, const FileTable& files, Numbers numbers) {
    std::ranges::sort(numbers, {}, [&](std::size_t number) { return files[number].id; });
    Keys keys;
    keys.reserve(numbers.size());
    for (const auto number : numbers) {
        const auto head = job.headSign(files[number].id);
        if (!head)
            return failure(head.error());
        const auto size = files[number].size;
        keys.emplace(number,
                     *head ? fmt::format("{}:{:016x}", size, **head) : fmt::format("{}/{}", size, files.name(number)));
    }
    return keys;
}

// Of these files, those whose size is that of a file on the other side: no other can have moved.
Numbers ofSizes(const FileTable& files, const Numbers& numbers, const FileTable& others, const Numbers& there) {
    std::unordered_set<std::int64_t> sizes;
    for (const auto number : there) sizes.insert(others[number].size);
    Numbers some;
    std::ranges::copy_if(numbers, std::back_inserter(some), [&](std::size_t number) {
        return files[number].size > 0 && sizes.contains(files[number].size);
    });
    return some;
}

class Comparison {
public:
    Comparison(const ComparisonSides& sides, const std::function<void(const ChangedFile&)>& take)
        : sides_(sides), take_(take) {}

    Result<ChangeCounts> run() {
        const auto inStep = readInStep();
        if (!inStep)
            return failure(inStep.error());
        const auto read = *inStep ? Result<void>() : readFirst().and_then([this] { return readSecond(); });
        if (const auto done = read.and_then([this] { return findMoved(); }); !done)
            return failure(done.error());
        tellSecond();
        tellLost();
        return counts_;
    }

private:
    // False: one of the two is not in the order of a walk, and nothing is known yet.
    Result<bool> readInStep() {
        auto first = FilesInOrder::begin(sides_.first, sides_.stripFirst);
        auto second = FilesInOrder::begin(sides_.second, sides_.stripSecond);
        if (!first || !second)
            return failure(first ? second.error() : first.error());
        while (!first->hasEnded() || !second->hasEnded()) {
            if (auto taken = takeNext(*first, *second); !taken)
                return failure(taken.error());
            if (first->isInOrder() && second->isInOrder())
                continue;
            first_.clear();
            gained_.clear();
            now_.clear();
            counts_ = {};
            return false;
        }
        return true;
    }

    Result<void> takeNext(FilesInOrder& first, FilesInOrder& second) {
        const auto order = first.hasEnded()    ? std::strong_ordering::greater
                           : second.hasEnded() ? std::strong_ordering::less
                                               : first.order(second);
        if (std::is_gt(order)) {
            gained_.put(second.file().folder, second.file());
            return second.advance();
        }
        const Now now = std::is_lt(order) ? Now() : Now{true, second.file().size, second.file().grade};
        const BriefFile before = first.file();
        if (now.seen && changeOf(before, now) == Change::Same) {
            ++counts_[static_cast<std::size_t>(Change::Same)];
        } else {
            first_.put(before.folder, before);
            now_.push_back(now);
        }
        return first.advance().and_then([&] { return std::is_eq(order) ? second.advance() : Result<void>(); });
    }

    Result<void> readFirst() {
        auto read = eachBrief(sides_.first, {}, [this](const BriefFile& file) {
            if (const auto folder = folderBelow(file.folder, sides_.stripFirst))
                first_.put(*folder, file);
        });
        now_.resize(first_.size());
        return read;
    }

    Result<void> readSecond() {
        return eachBrief(sides_.second, {}, [this](const BriefFile& file) {
            const auto folder = folderBelow(file.folder, sides_.stripSecond);
            if (!folder)
                return;
            if (const auto same = first_.find(*folder, file.name))
                now_[*same] = {true, file.size, file.grade};
            else
                gained_.put(*folder, file);
        });
    }

    [[nodiscard]] Numbers lost() const {
        Numbers numbers;
        for (std::size_t i = 0; i < now_.size(); ++i) {
            if (!now_[i].seen)
                numbers.push_back(i);
        }
        return numbers;
    }

    Result<void> findMoved() {
        const Numbers gone = lost();
        Numbers come(gained_.size());
        for (std::size_t i = 0; i < come.size(); ++i) come[i] = i;
        const Numbers from = byPath(first_, ofSizes(first_, gone, gained_, come));
        const Numbers to = byPath(gained_, ofSizes(gained_, come, first_, gone));
        const auto keys = keysOf(sides_.first, first_, from);
        const auto wanted = keysOf(sides_.second, gained_, to);
        if (!keys || !wanted)
            return failure(keys ? wanted.error() : keys.error());
        std::unordered_map<std::string_view, Numbers> places;
        for (const auto number : from) places[keys->at(number)].push_back(number);
        for (const auto number : to) {
            const auto found = places.find(wanted->at(number));
            if (found == places.end() || found->second.empty())
                continue;
            moved_.emplace(number, found->second.back());
            now_[found->second.back()].seen = true;
            movedAway_.insert(found->second.back());
            found->second.pop_back();
        }
        return {};
    }

    void tell(const ChangedFile& file) {
        ++counts_[static_cast<std::size_t>(file.change)];
        take_(file);
    }

    // Gained, moved and changed files, by path.
    void tellSecond() {
        std::vector<std::pair<std::string, std::pair<bool, std::size_t>>> rows;
        for (std::size_t i = 0; i < first_.size(); ++i) {
            if (!now_[i].seen || movedAway_.contains(i))
                continue;
            if (changeOf(first_[i], now_[i]) == Change::Same)
                ++counts_[static_cast<std::size_t>(Change::Same)];
            else
                rows.push_back({first_.path(i), {false, i}});
        }
        for (std::size_t i = 0; i < gained_.size(); ++i) rows.push_back({gained_.path(i), {true, i}});
        std::ranges::sort(rows);
        for (auto& [path, row] : rows) row.first ? tellGained(path, row.second) : tellChanged(path, row.second);
    }

    void tellChanged(const std::string& path, std::size_t number) {
        const FileTable::File& before = first_[number];
        const Now& now = now_[number];
        tell({changeOf(before, now), path, {}, before.grade, now.grade, first_.extension(number)});
    }

    void tellGained(const std::string& path, std::size_t number) {
        ChangedFile file{Change::Gained, path, {}, {}, gained_[number].grade, gained_.extension(number)};
        if (const auto from = moved_.find(number); from != moved_.end()) {
            file.change = Change::Moved;
            file.before = first_.path(from->second);
            file.gradeBefore = first_[from->second].grade;
        }
        tell(file);
    }

    void tellLost() {
        for (const auto number : byPath(first_, lost()))
            tell({Change::Lost, first_.path(number), {}, first_[number].grade, {}, first_.extension(number)});
    }

    const ComparisonSides& sides_;
    const std::function<void(const ChangedFile&)>& take_;
    FileTable first_;  // files that are lost or changed; all of them where the jobs are not in order
    FileTable gained_;
    std::vector<Now> now_;                                // by number in first_
    std::unordered_map<std::size_t, std::size_t> moved_;  // from numbers in gained_ to those in first_
    std::unordered_set<std::size_t> movedAway_;
    ChangeCounts counts_{};
};

}  // namespace

Result<ChangeCounts> compareJobs(const ComparisonSides& sides, const std::function<void(const ChangedFile&)>& take) {
    return Comparison(sides, take).run();
}

}  // namespace quillon
