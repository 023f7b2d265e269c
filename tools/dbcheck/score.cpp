// SPDX-License-Identifier: MIT
#include "dbcheck/score.h"

#include <algorithm>

namespace quillon {

namespace {

double percentOf(std::size_t part, std::size_t whole, double ofNothing) {
    return whole == 0 ? ofNothing : 100.0 * static_cast<double>(part) / static_cast<double>(whole);
}

void scoreOwn(const Sample& sample, const std::vector<CompiledTerm>& terms, Score& score) {
    auto& own = score.extensions[sample.extension];
    ++own.samples;
    ++score.samples;
    if (firstFit(terms, sample.folded)) {
        ++own.good;
        ++score.good;
    } else {
        score.missed.push_back(sample.path);
    }
}

void scoreForeign(const Sample& sample, const std::string& extension, const std::vector<CompiledTerm>& terms,
                  const Families& families, Score& score) {
    const bool fits = firstFit(terms, sample.folded).has_value();
    if (families.mayAccept(extension, sample.extension)) {
        score.familyAccepts += fits ? 1 : 0;
        return;
    }
    ++score.pairs;
    if (!fits)
        return;
    auto& own = score.extensions[extension];
    ++score.falseAccepts;
    ++own.falseAccepts;
    ++own.acceptedFrom[sample.extension];
}

}  // namespace

double Score::goodPercent() const {
    return percentOf(good, samples, 100);
}

double Score::falseAcceptPercent() const {
    return percentOf(falseAccepts, pairs, 0);
}

Score scoreSamples(const HeaderDatabase& database, const std::vector<Sample>& samples) {
    Score score;
    for (const auto& [extension, terms] : database.terms) score.extensions[extension];
    for (const auto& sample : samples) {
        if (isTooSmall(sample)) {
            ++score.tooSmall;
            continue;
        }
        if (!database.terms.contains(sample.extension))
            ++score.withoutTermFile;
        for (const auto& [extension, terms] : database.terms) {
            if (extension == sample.extension) {
                scoreOwn(sample, terms, score);
            } else {
                scoreForeign(sample, extension, terms, database.families, score);
            }
        }
    }
    return score;
}

double MislabelledScore::rejectedPercent() const {
    return percentOf(samples - accepted.size(), samples, 100);
}

double MislabelledScore::namedPercent() const {
    return percentOf(named, samples - accepted.size(), 100);
}

MislabelledScore scoreMislabelled(const HeaderDatabase& database, const std::vector<Sample>& samples) {
    MislabelledScore score;
    for (const auto& sample : samples) {
        if (isTooSmall(sample))
            continue;
        ++score.samples;
        const auto own = database.terms.find(sample.extension);
        if (own != database.terms.end() && firstFit(own->second, sample.folded)) {
            score.accepted.push_back(sample.path);
            continue;
        }
        score.named += namedByCommonHeader(database.commonList, sample.folded) ? 1 : 0;
    }
    return score;
}

}  // namespace quillon
