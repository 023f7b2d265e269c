// SPDX-License-Identifier: MIT
#include "testing/term_index.h"

#include <algorithm>
#include <cstring>

#include "platform/folders.h"
#include "platform/whole_file.h"
#include "text/fields.h"
#include "text/list_text.h"

namespace quillon {

namespace {

constexpr std::string_view kTermFileEnding = ".dat";

std::size_t differentBytes(std::string_view bytes) {
    std::bitset<256> seen;
    for (const char c : bytes) seen.set(static_cast<unsigned char>(c));
    return seen.count();
}

std::uint32_t fourBytes(const char* at) {
    std::uint32_t key = 0;
    std::memcpy(&key, at, sizeof key);
    return key;
}

std::uint16_t twoBytes(const char* at) {
    std::uint16_t pair = 0;
    std::memcpy(&pair, at, sizeof pair);
    return pair;
}

}  // namespace

bool isTelling(const CompiledTerm& term) {
    const auto different = differentBytes(term.folded());
    if (term.isAnywhere())
        return term.folded().size() >= 8 && different >= 4;
    return term.fixedOffset() && term.folded().size() >= 4 && different >= 3;
}

void TermIndex::add(std::string_view extension, const std::vector<CompiledTerm>& terms) {
    for (const auto& term : terms) {
        if (!isTelling(term))
            continue;
        const auto number = static_cast<std::uint32_t>(terms_.size());
        const char* begin = term.folded().data();
        if (term.isAnywhere()) {
            anywhere_.emplace(fourBytes(begin), number);
            mayBegin_.set(twoBytes(begin));
            mayGoOn_.set(twoBytes(begin + 2));
        } else {
            Place& place = placeAt(*term.fixedOffset());
            place.begins.set(static_cast<unsigned char>(begin[0]));
            place.goesOn.set(static_cast<unsigned char>(begin[1]));
            place.terms.emplace(fourBytes(begin), number);
        }
        terms_.push_back({term, std::string(extension)});
    }
}

TermIndex::Place& TermIndex::placeAt(std::size_t offset) {
    const auto known = std::ranges::find(fixed_, offset, &Place::offset);
    return known != fixed_.end()
               ? *known
               : fixed_.emplace_back(Place{.offset = offset, .begins = {}, .goesOn = {}, .terms = {}});
}

TermIndex TermIndex::ofFolder(const NativePath& databaseFolder) {
    TermIndex index;
    const auto names = listFiles(databaseFolder);
    if (!names)
        return index;
    for (const auto& name : *names) {
        const std::string folded = foldedName(name);
        if (isTemporaryName(name) || !folded.ends_with(kTermFileEnding))
            continue;
        const auto bytes = readWholeFile(databaseFolder / name);
        if (!bytes)
            continue;
        std::vector<CompiledTerm> terms;
        for (const auto line : splitLines(*bytes)) terms.push_back(CompiledTerm::fromTermFileLine(line));
        index.add(std::string_view(folded).substr(0, folded.size() - kTermFileEnding.size()), terms);
    }
    return index;
}

void TermIndex::consider(const Places& places, Key key, const HeaderBytes& folded, Match& best) const {
    const auto [first, last] = places.equal_range(key);
    for (auto place = first; place != last; ++place) {
        const Entry& entry = terms_[place->second];
        const auto length = entry.term.folded().size();
        if (length < best.length || entry.term.match(folded) != MatchResult::Yes)
            continue;
        if (length > best.length)
            best = {length, {}};
        best.extensions.push_back(entry.extension);
    }
}

TermIndex::Match TermIndex::find(const HeaderBytes& folded) const {
    Match best;
    for (const Place& place : fixed_) {
        if (place.offset + sizeof(Key) > folded.size())
            continue;
        const char* const at = folded.data() + place.offset;
        if (place.begins.test(static_cast<unsigned char>(at[0])) &&
            place.goesOn.test(static_cast<unsigned char>(at[1])))
            consider(place.terms, fourBytes(at), folded, best);
    }
    for (std::size_t at = 0; at + sizeof(Key) <= folded.size(); ++at) {
        const char* const bytes = folded.data() + at;
        if (mayBegin_.test(twoBytes(bytes)) && mayGoOn_.test(twoBytes(bytes + 2)))
            consider(anywhere_, fourBytes(bytes), folded, best);
    }
    std::sort(best.extensions.begin(), best.extensions.end());
    best.extensions.erase(std::unique(best.extensions.begin(), best.extensions.end()), best.extensions.end());
    return best;
}

}  // namespace quillon
