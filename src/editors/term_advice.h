// SPDX-License-Identifier: MIT
#pragma once

// What the heads of the bench say of the term that stands in the criteria, and which terms they offer; found on threads
// of its own, while the screen goes on.

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "editors/bench_heads.h"
#include "platform/start_beside.h"

namespace quillon {

/// The record in the criteria and those that it would stand beside.
struct AdviceQuestion {
    HeaderTerm term;
    std::vector<HeaderTerm> rows;
    int ownRow = -1;  ///< the row that it would replace
    /// The files that it is no false alarm for; empty for a term that counts whatever the extension.
    std::string extension;

    friend bool operator==(const AdviceQuestion&, const AdviceQuestion&) = default;
};

class TermAdvice {
public:
    TermAdvice() = default;
    TermAdvice(const TermAdvice&) = delete;
    TermAdvice& operator=(const TermAdvice&) = delete;
    /// Does not wait for what is under way.
    ~TermAdvice();

    /// What is asked from now on is about this. The heads are read as soon as there is a term or terms are wanted; what
    /// was read for another wish is forgotten.
    void begin(BenchWish wish);

    /// To be called again and again: takes answers that have come, and asks when the question is another one. True when
    /// there is something else to be shown.
    [[nodiscard]] bool look(const AdviceQuestion& question);
    /// One line for a person, UTF-8; empty without a term.
    [[nodiscard]] const std::string& line() const { return line_; }

    /// Terms are wanted; they come with a later `look`.
    void askForTerms() { termsWanted_ = true; }
    [[nodiscard]] bool termsAreWanted() const { return termsWanted_; }
    /// The terms that have come, once.
    [[nodiscard]] std::optional<std::vector<OfferedTerm>> takeTerms() { return std::exchange(offered_, std::nullopt); }

private:
    using SharedBench = std::shared_ptr<const Bench>;
    template <typename Answer>
    using Coming = AnswerBeside<std::function<Answer()>>;

    void start();
    void takeAnswers();
    void ask(const AdviceQuestion& question);
    void askForOffer();
    void show(std::string line);

    std::shared_ptr<const BenchWish> wish_;
    std::shared_ptr<std::atomic<bool>> stop_;
    Coming<SharedBench> loading_;
    SharedBench bench_;
    std::optional<AdviceQuestion> asked_;
    Coming<std::string> answer_;
    Coming<std::vector<OfferedTerm>> offer_;
    std::optional<std::vector<OfferedTerm>> offered_;
    bool termsWanted_ = false;
    std::string line_;
    bool changed_ = false;
};

/// "1  NEWMARK   (all 212 files; none of 40,116 others)": an offered term for a list of ten.
[[nodiscard]] std::string offerText(const OfferedTerm& offered);

}  // namespace quillon
