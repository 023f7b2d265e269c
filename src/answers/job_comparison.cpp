// SPDX-License-Identifier: MIT
#include "answers/job_comparison.h"

#include <map>
#include <unordered_map>
#include <utility>
#include <vector>

#include <fmt/format.h>

namespace quillon {

namespace {

struct Known {
    std::int64_t id = 0;
    std::int64_t size = 0;
    std::optional<Grade> grade;
    std::string extension;
    bool seen = false;
};
using Files = std::map<std::string, Known, std::less<>>;

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

// The path behind a folder that is cut off; none for a file beside it.
std::optional<std::string> below(const std::string& path, std::string_view folder) {
    if (folder.empty())
        return path;
    if (path.size() <= folder.size() || !path.starts_with(folder) || path[folder.size()] != '/')
        return std::nullopt;
    return path.substr(folder.size() + 1);
}

Result<Files> filesOf(JobAnswers& job, std::string_view strip) {
    Files files;
    EvidenceRow file;
    while (true) {
        const auto more = job.next(file);
        if (!more)
            return failure(more.error());
        if (!*more)
            return files;
        if (auto path = below(file.path(), strip))
            files.insert_or_assign(std::move(*path), Known{file.id, file.size, file.grade, file.extension, false});
    }
}

Change changeOf(const Known& before, const Known& now) {
    const int gain = worth(now.grade) - worth(before.grade);
    if (gain != 0)
        return gain > 0 ? Change::Better : Change::Worse;
    return before.size == now.size ? Change::Same : before.size < now.size ? Change::Better : Change::Worse;
}

std::string nameOf(std::string_view path) {
    return std::string(path.substr(path.rfind('/') + 1));
}

// What tells that two paths hold the same file: its size and its head, or its name where no head is known.
Result<std::string> keyOf(JobAnswers& job, const std::string& path, const Known& known) {
    const auto head = job.headSign(known.id);
    if (!head)
        return failure(head.error());
    return *head ? fmt::format("{}:{:016x}", known.size, **head) : fmt::format("{}/{}", known.size, nameOf(path));
}

// Files that only the first job has under their path.
class Movable {
public:
    [[nodiscard]] static Result<Movable> of(JobAnswers& job, const Files& first, const Files& second) {
        Movable movable;
        for (const auto& [path, known] : first) {
            if (known.size == 0 || second.contains(path))
                continue;
            const auto key = keyOf(job, path, known);
            if (!key)
                return failure(key.error());
            movable.places_[*key].push_back(path);
        }
        return movable;
    }

    [[nodiscard]] Result<std::optional<std::string>> take(JobAnswers& job, const std::string& path,
                                                          const Known& known) {
        if (places_.empty() || known.size == 0)
            return std::nullopt;
        const auto key = keyOf(job, path, known);
        if (!key)
            return failure(key.error());
        const auto found = places_.find(*key);
        if (found == places_.end() || found->second.empty())
            return std::nullopt;
        std::string from = std::move(found->second.back());
        found->second.pop_back();
        return from;
    }

private:
    std::unordered_map<std::string, std::vector<std::string>> places_;
};

ChangedFile changed(Change change, const std::string& path, const Known* before, const Known* now) {
    ChangedFile file{change, path, {}, {}, {}, (now != nullptr ? now : before)->extension};
    if (before != nullptr)
        file.gradeBefore = before->grade;
    if (now != nullptr)
        file.gradeNow = now->grade;
    return file;
}

// One file of the second job.
Result<ChangedFile> compareFile(JobAnswers& job, const std::string& path, const Known& now, Files& first,
                                Movable& movable) {
    if (const auto same = first.find(path); same != first.end()) {
        same->second.seen = true;
        return changed(changeOf(same->second, now), path, &same->second, &now);
    }
    const auto from = movable.take(job, path, now);
    if (!from)
        return failure(from.error());
    if (!*from)
        return changed(Change::Gained, path, nullptr, &now);
    Known& before = first.find(**from)->second;
    before.seen = true;
    ChangedFile file = changed(Change::Moved, path, &before, &now);
    file.before = **from;
    return file;
}

}  // namespace

Result<ChangeCounts> compareJobs(const ComparisonSides& sides, const std::function<void(const ChangedFile&)>& take) {
    auto first = filesOf(sides.first, sides.stripFirst);
    if (!first)
        return failure(first.error());
    const auto second = filesOf(sides.second, sides.stripSecond);
    if (!second)
        return failure(second.error());
    ChangeCounts counts{};
    const auto tell = [&](const ChangedFile& file) {
        ++counts[static_cast<std::size_t>(file.change)];
        take(file);
    };
    auto movable = Movable::of(sides.first, *first, *second);
    if (!movable)
        return failure(movable.error());
    for (const auto& [path, known] : *second) {
        const auto file = compareFile(sides.second, path, known, *first, *movable);
        if (!file)
            return failure(file.error());
        tell(*file);
    }
    for (const auto& [path, known] : *first) {
        if (!known.seen)
            tell(changed(Change::Lost, path, &known, nullptr));
    }
    return counts;
}

}  // namespace quillon
