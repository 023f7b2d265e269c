// SPDX-License-Identifier: MIT
#include "dbcheck/command.h"

#include <ostream>

#include <fmt/format.h>

#include "dbcheck/damage.h"
#include "dbcheck/database_lint.h"
#include "dbcheck/doubts.h"
#include "dbcheck/ends.h"
#include "dbcheck/extension_table.h"
#include "dbcheck/options.h"
#include "dbcheck/score.h"
#include "dbcheck/suggestions.h"
#include "platform/folders.h"

namespace quillon {

namespace {

constexpr const char* kIndex = "index.tsv";
constexpr const char* kMislabelled = "mislabelled.tsv";

// Collects what is wrong and says it at once.
class Verdict {
public:
    explicit Verdict(std::ostream& err) : err_(err) {}

    void wrong(const std::string& text) {
        err_ << "dbcheck: " << text << '\n';
        good_ = false;
    }
    [[nodiscard]] bool good() const { return good_; }

private:
    std::ostream& err_;
    bool good_ = true;
};

void reportLint(const Problems& problems, Verdict& verdict) {
    for (const auto& problem : problems) {
        const auto line = problem.line == 0 ? std::string() : fmt::format(":{}", problem.line);
        verdict.wrong(fmt::format("{}{}: {}", problem.file, line, problem.text));
    }
}

void printExtension(const std::string& extension, const ExtensionScore& score, std::size_t terms, bool pairs,
                    std::ostream& out) {
    out << fmt::format("{:<24} {:>5} {:>7} {:>5} {:>8} {:>13}", extension, terms, score.samples, score.good,
                       score.samples - score.good, score.falseAccepts);
    if (pairs) {
        for (const auto& [other, count] : score.acceptedFrom) out << fmt::format(" {}:{}", other, count);
    }
    out << '\n';
}

void printScore(const HeaderDatabase& database, const Score& score, bool pairs, std::ostream& out) {
    out << fmt::format("{:<24} {:>5} {:>7} {:>5} {:>8} {:>13}\n", "extension", "terms", "samples", "good", "not good",
                       "false accepts");
    for (const auto& [extension, own] : score.extensions)
        printExtension(extension, own, database.terms.at(extension).size(), pairs, out);
    for (const auto& path : score.missed) out << "not good: " << path << '\n';
    out << fmt::format("samples: {} of known extensions, {} good ({:.2f} %); {} of unknown extensions, {} too small\n",
                       score.samples, score.good, score.goodPercent(), score.withoutTermFile, score.tooSmall);
    out << fmt::format("false accepts: {} of {} pairs ({:.4f} %), and {} within families\n", score.falseAccepts,
                       score.pairs, score.falseAcceptPercent(), score.familyAccepts);
}

void printMislabelled(const MislabelledScore& score, std::ostream& out) {
    for (const auto& path : score.accepted) out << "good, though mislabelled: " << path << '\n';
    out << fmt::format("mislabelled: {}, not good {} ({:.1f} %), of them named by a common header {} ({:.1f} %)\n",
                       score.samples, score.samples - score.accepted.size(), score.rejectedPercent(), score.named,
                       score.namedPercent());
}

void compare(const char* what, bool holds, double found, double threshold, Verdict& verdict) {
    if (!holds)
        verdict.wrong(fmt::format("{}: {:.4f} %, the threshold is {:.4f} %", what, found, threshold));
}

void judgeByDamage(const HeaderDatabase& database, const std::vector<Sample>& samples, const DbcheckOptions& options,
                   std::ostream& out, Verdict& verdict) {
    out << fmt::format("{:<10} {:>8} {:>6} {:>6} {:>11}\n", "damage", "samples", "good", "named", "recovered");
    for (const auto& score : scoreDamage(database, samples)) {
        const double percent = score.recoveredPercent();
        out << fmt::format("{:<10} {:>8} {:>6} {:>6} {:>9.2f} %\n", score.kind.name, score.samples, score.good,
                           score.named, percent);
        for (const auto& [name, threshold] : options.maxRecovered) {
            if (name == score.kind.name)
                compare(fmt::format("recovered behind the damage {}", name).c_str(), percent <= threshold, percent,
                        threshold, verdict);
        }
    }
}

Result<void> judgeBySamples(const HeaderDatabase& database, const DbcheckOptions& options, std::ostream& out,
                            Verdict& verdict) {
    const auto samples = readSamples(*options.samples, kIndex);
    if (!samples)
        return failure(samples.error());
    const Score score = scoreSamples(database, *samples);
    printScore(database, score, options.pairs, out);
    compare("good samples", score.goodPercent() >= options.minGood, score.goodPercent(), options.minGood, verdict);
    compare("false accepts", score.falseAcceptPercent() <= options.maxFalseAccepts, score.falseAcceptPercent(),
            options.maxFalseAccepts, verdict);
    if (options.damage)
        judgeByDamage(database, *samples, options, out, verdict);
    if (!pathExists(*options.samples / kMislabelled))
        return {};
    const auto mislabelled = readSamples(*options.samples, kMislabelled);
    if (!mislabelled)
        return failure(mislabelled.error());
    const auto wrong = scoreMislabelled(database, *mislabelled);
    printMislabelled(wrong, out);
    compare("mislabelled samples not good", wrong.rejectedPercent() >= options.minRejected, wrong.rejectedPercent(),
            options.minRejected, verdict);
    compare("of them named by a common header", wrong.namedPercent() >= options.minNamed, wrong.namedPercent(),
            options.minNamed, verdict);
    return {};
}

Result<void> judgeDoubts(const DbcheckOptions& options, std::ostream& out, Verdict& verdict) {
    const auto samples = readSamples(*options.samples, kIndex);
    if (!samples)
        return failure(samples.error());
    std::map<std::string, std::string> odd;
    if (options.odd) {
        auto read = readOddSamples(*options.odd);
        if (!read)
            return failure(read.error());
        odd = std::move(*read);
    }
    const auto scores = scoreDoubts(*samples, odd);
    for (const auto& line : scores.doubted) out << "doubted: " << line << '\n';
    out << doubtTable(scores);
    const double doubted = scores.doubtedPercent();
    out << fmt::format("doubted: {} of the samples whose format is known ({:.2f} %)\n", scores.doubted.size(), doubted);
    out << fmt::format("odd samples: {}, doubted {}\n", scores.odd, scores.oddDoubted);
    compare("doubted samples", doubted <= options.maxDoubted, doubted, options.maxDoubted, verdict);
    return {};
}

void judgeEnds(const DbcheckOptions& options, std::ostream& out, Verdict& verdict) {
    const auto scores = scoreEnds(*options.ends);
    for (const auto& line : scores.doubted) out << "doubted: " << line << '\n';
    out << endTable(scores);
    const auto files = scores.files();
    const double doubted =
        files == 0 ? 0 : 100.0 * static_cast<double>(scores.doubted.size()) / static_cast<double>(files);
    out << fmt::format("doubted: {} of {} files ({:.2f} %); {} could not be read\n", scores.doubted.size(), files,
                       doubted, scores.unread);
    compare("doubted files", doubted <= options.maxDoubted, doubted, options.maxDoubted, verdict);
}

Result<void> judgeSuggestions(const HeaderDatabase& database, const DbcheckOptions& options, std::ostream& out,
                              Verdict& verdict) {
    const auto samples = readSamples(*options.samples, kIndex);
    if (!samples)
        return failure(samples.error());
    const auto all = scoreSuggestions(database, *samples);
    out << suggestionTable(all);
    const double first = meanPercent(all, &SuggestedScore::acceptedPercent);
    const double three = meanPercent(all, &SuggestedScore::acceptedThreePercent);
    const double wrong = meanPercent(all, &SuggestedScore::falseThreePercent);
    compare("accepted by the first term", first >= options.minSuggested, first, options.minSuggested, verdict);
    compare("accepted by the first three terms", three >= options.minSuggestedThree, three, options.minSuggestedThree,
            verdict);
    compare("false accepts of suggested terms", wrong <= options.maxSuggestedFalse, wrong, options.maxSuggestedFalse,
            verdict);
    return {};
}

Result<void> judgeDatabase(const HeaderDatabase& database, const DbcheckOptions& options, std::ostream& out,
                           Verdict& verdict) {
    const auto problems = lintDatabase(options.database, database);
    reportLint(problems, verdict);
    if (database.terms.size() < options.minExtensions)
        verdict.wrong(fmt::format("{} term files, at least {} wanted", database.terms.size(), options.minExtensions));
    if (options.samples) {
        if (auto judged = judgeBySamples(database, options, out, verdict); !judged)
            return judged;
    }
    out << fmt::format("lint: {} findings in {} term files\n", problems.size(), database.terms.size());
    return {};
}

Result<void> judgeByMode(const HeaderDatabase& database, const DbcheckOptions& options, std::ostream& out,
                         Verdict& verdict) {
    if (options.ends) {
        judgeEnds(options, out, verdict);
        return {};
    }
    if (options.suggest)
        return judgeSuggestions(database, options, out, verdict);
    return options.doubts ? judgeDoubts(options, out, verdict) : judgeDatabase(database, options, out, verdict);
}

}  // namespace

int runDbcheck(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
    const auto parsed = parseDbcheck(arguments, out, err);
    if (!parsed.options)
        return parsed.exitStatus;
    const auto& options = *parsed.options;
    const auto database = readHeaderDatabase(options.database);
    if (!database) {
        err << "dbcheck: " << database.error().text << '\n';
        return kDbcheckUsage;
    }
    if (options.table) {
        out << extensionTable(*database);
        return kDbcheckGood;
    }
    Verdict verdict(err);
    if (auto judged = judgeByMode(*database, options, out, verdict); !judged) {
        err << "dbcheck: " << judged.error().text << '\n';
        return kDbcheckUsage;
    }
    return verdict.good() ? kDbcheckGood : kDbcheckBad;
}

}  // namespace quillon
