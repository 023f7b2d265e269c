// SPDX-License-Identifier: MIT
#include "dbcheck/suggestions.h"

#include <algorithm>
#include <map>

#include <fmt/format.h>

namespace quillon {

namespace {

constexpr std::size_t kThirds = 3;

using Own = std::map<std::string, std::vector<const Sample*>>;

double percentOf(std::size_t part, std::size_t whole) {
    return whole == 0 ? 0 : 100.0 * static_cast<double>(part) / static_cast<double>(whole);
}

Own healthyByExtension(const HeaderDatabase& database, const std::vector<Sample>& samples) {
    Own own;
    for (const Sample& sample : samples) {
        const auto terms = database.terms.find(sample.extension);
        if (!isTooSmall(sample) && terms != database.terms.end() && firstFit(terms->second, sample.folded))
            own[sample.extension].push_back(&sample);
    }
    std::erase_if(own, [](const auto& entry) { return entry.second.size() < kThirds; });
    return own;
}

std::vector<CompiledTerm> compiled(const std::vector<TermSuggestion>& suggestions, std::size_t most) {
    std::vector<CompiledTerm> terms;
    for (std::size_t i = 0; i < std::min(most, suggestions.size()); ++i)
        terms.push_back(CompiledTerm::fromParts(static_cast<double>(suggestions[i].position), suggestions[i].term,
                                                suggestions[i].type == 'H'));
    return terms;
}

// What one third that was held back, and all other extensions, say of the terms.
SuggestedScore judge(const std::vector<TermSuggestion>& suggestions, const std::vector<const Sample*>& heldBack,
                     const std::vector<const Sample*>& others) {
    const auto first = compiled(suggestions, 1);
    const auto three = compiled(suggestions, 3);
    SuggestedScore score;
    score.heldBack = heldBack.size();
    score.others = others.size();
    for (const Sample* sample : heldBack) {
        score.accepted += firstFit(first, sample->folded) ? 1 : 0;
        score.acceptedThree += firstFit(three, sample->folded) ? 1 : 0;
    }
    for (const Sample* sample : others) {
        score.falseFirst += firstFit(first, sample->folded) ? 1 : 0;
        score.falseThree += firstFit(three, sample->folded) ? 1 : 0;
    }
    return score;
}

ExtensionSuggestions scoreExtension(const std::string& extension, const std::vector<const Sample*>& own,
                                    const Families& families, const std::vector<Sample>& samples) {
    std::vector<HeaderBytes> otherHeads;
    std::vector<const Sample*> outside;  // the families
    for (const Sample& sample : samples) {
        if (sample.extension == extension || isTooSmall(sample))
            continue;
        otherHeads.push_back(sample.head);
        if (!families.mayAccept(extension, sample.extension))
            outside.push_back(&sample);
    }
    ExtensionSuggestions result{extension, {}, {}};
    for (std::size_t third = 0; third < kThirds; ++third) {
        SuggestionHeads heads;
        heads.extension = extension;
        std::vector<const Sample*> heldBack;
        for (std::size_t i = 0; i < own.size(); ++i) {
            if (i % kThirds == third)
                heldBack.push_back(own[i]);
            else
                heads.listed.push_back(own[i]->head);
        }
        heads.others = otherHeads;
        const auto suggestions = suggestTerms(std::move(heads));
        result.score += judge(suggestions, heldBack, outside);
        if (!suggestions.empty())
            result.first.push_back(suggestions.front());
    }
    return result;
}

}  // namespace

double SuggestedScore::acceptedPercent() const {
    return percentOf(accepted, heldBack);
}

double SuggestedScore::acceptedThreePercent() const {
    return percentOf(acceptedThree, heldBack);
}

double SuggestedScore::falsePercent() const {
    return percentOf(falseFirst, others);
}

double SuggestedScore::falseThreePercent() const {
    return percentOf(falseThree, others);
}

SuggestedScore& SuggestedScore::operator+=(const SuggestedScore& other) {
    heldBack += other.heldBack;
    accepted += other.accepted;
    acceptedThree += other.acceptedThree;
    others += other.others;
    falseFirst += other.falseFirst;
    falseThree += other.falseThree;
    return *this;
}

std::vector<ExtensionSuggestions> scoreSuggestions(const HeaderDatabase& database, const std::vector<Sample>& samples) {
    std::vector<ExtensionSuggestions> all;
    for (const auto& [extension, own] : healthyByExtension(database, samples))
        all.push_back(scoreExtension(extension, own, database.families, samples));
    return all;
}

double meanPercent(const std::vector<ExtensionSuggestions>& all, double (SuggestedScore::*percent)() const) {
    double sum = 0;
    for (const auto& one : all) sum += (one.score.*percent)();
    return all.empty() ? 0 : sum / static_cast<double>(all.size());
}

std::string suggestionTable(const std::vector<ExtensionSuggestions>& all) {
    std::string text = fmt::format("{:<16} {:>9} {:>7} {:>7} {:>8} {:>8}  {}\n", "extension", "held back", "first",
                                   "three", "false", "of three", "first terms");
    for (const auto& [extension, score, first] : all) {
        text += fmt::format("{:<16} {:>9} {:>5.0f} % {:>5.0f} % {:>6.2f} % {:>6.2f} % ", extension, score.heldBack,
                            score.acceptedPercent(), score.acceptedThreePercent(), score.falsePercent(),
                            score.falseThreePercent());
        for (const auto& term : first) text += fmt::format(" {},{},{}", term.position, term.term, term.type);
        text += '\n';
    }
    return text + fmt::format(
                      "suggested: {} extensions; accepted {:.2f} % by the first term, {:.2f} % by the first "
                      "three; false {:.3f} % and {:.3f} %\n",
                      all.size(), meanPercent(all, &SuggestedScore::acceptedPercent),
                      meanPercent(all, &SuggestedScore::acceptedThreePercent),
                      meanPercent(all, &SuggestedScore::falsePercent),
                      meanPercent(all, &SuggestedScore::falseThreePercent));
}

}  // namespace quillon
