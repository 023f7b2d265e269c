// SPDX-License-Identifier: MIT
#include "editors/bench_heads.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "app/kept_files.h"
#include "editors/kept_of_job.h"
#include "platform/folders.h"
#include "text/list_text.h"

namespace quillon {

namespace {

class Loading {
public:
    Loading(const BenchWish& wish, const std::atomic<bool>& stop, std::size_t most)
        : wish_(wish), stop_(stop), most_(most) {}

    Bench run() {
        for (const auto& evidence : evidenceNewestFirst(wish_.listFolder)) {
            if (stop_ || bench_.cut)
                break;
            readEvidence(evidence);
        }
        addListed();
        return std::move(bench_);
    }

private:
    void readEvidence(const NativePath& path) {
        auto reader = EvidenceReader::open(path);
        if (!reader)
            return;
        bench_.known.jobs.push_back(path.stem().native());
        EvidenceRow row;
        for (auto more = reader->next(row); more && *more && !stop_; more = reader->next(row)) {
            if (!row.head || !row.grade)
                continue;
            if (bench_.known.heads.size() >= most_) {
                bench_.cut = true;
                return;
            }
            const auto head = reader->head(row);
            if (!head)
                return;
            if (*head != nullptr && (*head)->length == kHeaderBytes)
                add(row, (*head)->bytes);
        }
    }

    void add(const EvidenceRow& row, const HeaderBytes& head) {
        bench_.known.heads.push_back(head);
        foldHeader(bench_.known.heads.back());
        bench_.known.kinds.push_back({numberOf(row.extension), static_cast<std::uint16_t>(bench_.known.jobs.size() - 1),
                                      row.grade == Grade::Good});
    }

    std::uint32_t numberOf(const std::string& extension) {
        const std::string name = extension.empty() ? "(none)" : extension;
        const auto next = static_cast<std::uint32_t>(bench_.known.extensions.size());
        const auto [known, added] = numbers_.try_emplace(name, next);
        if (added)
            bench_.known.extensions.push_back(name);
        return known->second;
    }

    // In the order of the list.
    void addListed() {
        KeptOfJob kept(wish_.listFolder, wish_.job);
        SourceFiles disk;
        for (std::size_t i = 0; i < std::min(wish_.files.size(), kMostListedHeads) && !stop_; ++i) {
            const std::string path = toNative(wish_.files[i]);
            HeaderBytes head;
            if (const auto known = kept.head(path); known && known->length == kHeaderBytes)
                head = known->bytes;
            else if (!disk.readHead(path, head))
                continue;
            bench_.raw.push_back(head);
            bench_.listed.push_back(head);
            foldHeader(bench_.listed.back());
        }
    }

    const BenchWish& wish_;
    const std::atomic<bool>& stop_;
    std::size_t most_;
    Bench bench_;
    std::unordered_map<std::string, std::uint32_t> numbers_;
};

bool isOfOneJob(const TermSuggestion& one, const Bench& bench, const BenchWish& wish) {
    if (one.type != 'T')
        return false;
    const auto term = CompiledTerm::fromTermFileLine(std::to_string(one.position) + "," + one.term + "," + one.type);
    const auto& known = bench.known;
    for (std::size_t i = 0; i < known.heads.size(); ++i) {
        if (known.jobs[known.kinds[i].job] != wish.job && term.match(known.heads[i]) == MatchResult::Yes)
            return false;
    }
    return true;
}

}  // namespace

std::vector<NativePath> evidenceNewestFirst(const NativePath& folder) {
    std::vector<std::pair<FileTime, NativePath>> found;
    if (!folder.empty()) {
        for (const auto& name : listFiles(folder).value_or(std::vector<std::string>{})) {
            if (name.ends_with(kEvidenceEnding))
                found.emplace_back(modificationTime(folder / name).value_or(FileTime{}), folder / name);
        }
    }
    std::ranges::sort(found, std::greater());
    std::vector<NativePath> paths;
    for (auto& [time, path] : found) paths.push_back(std::move(path));
    return paths;
}

Bench loadBench(const BenchWish& wish, const std::atomic<bool>& stop, std::size_t most) {
    return Loading(wish, stop, most).run();
}

std::vector<OfferedTerm> offerTerms(const Bench& bench, const BenchWish& wish) {
    const BenchHeads& known = bench.known;
    SuggestionHeads heads;
    heads.extension = wish.extension;
    heads.listed = bench.raw;
    heads.extensions = known.extensions;
    for (std::size_t i = 0; i < known.heads.size(); ++i) {
        const auto& kind = known.kinds[i];
        if (known.extensions[kind.extension] == wish.extension) {
            if (kind.good)
                heads.good.push_back(known.heads[i]);
        } else if (heads.others.size() < kMostSuggestionOthers) {
            heads.others.push_back(known.heads[i]);
            heads.otherExtensions.push_back(kind.extension);
        }
    }
    std::vector<OfferedTerm> offered;
    for (auto& one : suggestTerms(std::move(heads))) {
        const bool ofOneJob = isOfOneJob(one, bench, wish);
        offered.push_back({std::move(one), ofOneJob});
    }
    return offered;
}

}  // namespace quillon
