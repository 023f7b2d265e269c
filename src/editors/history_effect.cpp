// SPDX-License-Identifier: MIT
#include "editors/history_effect.h"

#include <algorithm>
#include <map>
#include <optional>
#include <string_view>

#include <fmt/format.h>

#include "editors/bench_heads.h"
#include "evidence/evidence_reader.h"
#include "testing/term_file.h"
#include "text/list_text.h"
#include "text/numbers.h"
#include "text/unicode.h"

namespace quillon {

namespace {

// Folded.
using HeadsByExtension = std::map<std::string, std::vector<HeaderBytes>, std::less<>>;

// The extension of a term file; none for another file.
std::optional<std::string> extensionOf(const FileChange& change) {
    constexpr std::string_view kFolder = "Database/";
    constexpr std::string_view kEnding = ".dat";
    const std::string_view file = change.file;
    if (!file.starts_with(kFolder) || !file.ends_with(kEnding) || file.size() <= kFolder.size() + kEnding.size())
        return std::nullopt;
    const auto name = file.substr(kFolder.size(), file.size() - kFolder.size() - kEnding.size());
    return utf16ToUtf8(lowered(toListText(name)));
}

void readHeads(EvidenceReader& reader, const std::atomic<bool>& stop, std::size_t& room, HeadsByExtension& heads) {
    EvidenceRow row;
    for (auto more = reader.next(row); more && *more && !stop && room > 0; more = reader.next(row)) {
        const auto wanted = row.head ? heads.find(row.extension) : heads.end();
        if (wanted == heads.end() || wanted->second.size() >= kMostEffectHeads)
            continue;
        const auto head = reader.head(row);
        if (!head)
            return;
        if (*head == nullptr || (*head)->length != kHeaderBytes)
            continue;
        wanted->second.push_back((*head)->bytes);
        foldHeader(wanted->second.back());
        --room;
    }
}

std::vector<CompiledTerm> termsOf(const std::optional<std::string>& bytes) {
    std::vector<CompiledTerm> terms;
    for (const auto& row : parseTermFile(bytes.value_or("")))
        terms.push_back(CompiledTerm::fromTermFileLine(row.offset.bytes + "," + row.term.bytes + "," + row.type.bytes));
    return terms;
}

// The first record that does not say no decides, as in the test of a file.
bool isGood(const HeaderBytes& head, const std::vector<CompiledTerm>& terms) {
    for (const auto& term : terms) {
        if (const MatchResult match = term.match(head); match != MatchResult::No)
            return match != MatchResult::GivenUp;
    }
    return false;
}

std::int64_t goodOf(const std::vector<HeaderBytes>& heads, const std::optional<std::string>& records) {
    const auto terms = termsOf(records);
    return std::ranges::count_if(heads, [&](const HeaderBytes& head) { return isGood(head, terms); });
}

std::vector<ChangeEffect> effectOf(const DatabaseChange& change, const HeadsByExtension& heads) {
    std::vector<ChangeEffect> effects;
    for (const auto& file : change.files) {
        const auto extension = extensionOf(file);
        const auto known = extension ? heads.find(*extension) : heads.end();
        if (known == heads.end() || known->second.empty())
            continue;
        effects.push_back({*extension, static_cast<std::int64_t>(known->second.size()),
                           goodOf(known->second, file.before), goodOf(known->second, file.after)});
    }
    return effects;
}

}  // namespace

std::vector<std::vector<ChangeEffect>> effectsOf(const std::vector<DatabaseChange>& changes,
                                                 const NativePath& listFolder, const std::atomic<bool>& stop) {
    HeadsByExtension heads;
    for (const auto& change : changes) {
        for (const auto& file : change.files) {
            if (auto extension = extensionOf(file))
                heads.try_emplace(std::move(*extension));
        }
    }
    std::size_t room = kMostEffectHeadsInAll;
    for (const auto& path : heads.empty() ? std::vector<NativePath>() : evidenceNewestFirst(listFolder)) {
        auto reader = EvidenceReader::open(path);
        if (reader && !stop)
            readHeads(*reader, stop, room, heads);
    }
    std::vector<std::vector<ChangeEffect>> effects;
    effects.reserve(changes.size());
    for (const auto& change : changes) effects.push_back(effectOf(change, heads));
    return effects;
}

std::string effectText(const std::vector<ChangeEffect>& effects) {
    std::string text;
    for (const auto& one : effects)
        text += fmt::format("{}Of {} kept heads of {} {} were good before and {} after", text.empty() ? "" : "\n",
                            grouped(one.heads), readable(std::string_view(one.extension)), grouped(one.before),
                            grouped(one.after));
    return text;
}

}  // namespace quillon
