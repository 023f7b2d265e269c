// SPDX-License-Identifier: MIT
#include "editors/term_advice.h"

#include <chrono>
#include <utility>

#include <fmt/format.h>

#include "text/list_text.h"
#include "text/numbers.h"

namespace quillon {

namespace {

// The newest heads are judged by as soon as they are there, the others when they have come.
constexpr std::size_t kFirstHeads = 100'000;

constexpr const char* kReading = "Reading the heads that jobs have kept ...";

// The answer of a thread that has come; none while it works or where there is none.
template <typename Coming>
auto taken(Coming& answer) -> std::optional<decltype(answer.get())> {
    if (!answer.valid() || !hasCome(answer, std::chrono::milliseconds(0)))
        return std::nullopt;
    return answer.get();
}

std::string adviceFor(const Bench& bench, const AdviceQuestion& question) {
    const auto alarm =
        judgeTerm(question.term, question.extension, bench.known, bench.listed, question.rows, question.ownRow);
    const std::string text = falseAlarmText(alarm);
    if (text.empty() || !bench.cut)
        return text;
    return text + fmt::format(" (the newest {} heads)", grouped(static_cast<std::int64_t>(bench.known.heads.size())));
}

}  // namespace

TermAdvice::~TermAdvice() {
    if (stop_)
        *stop_ = true;
}

void TermAdvice::begin(BenchWish wish) {
    if (stop_)
        *stop_ = true;
    stop_ = std::make_shared<std::atomic<bool>>(false);
    wish_ = std::make_shared<const BenchWish>(std::move(wish));
    bench_.reset();
    asked_.reset();
    answer_ = {};
    offer_ = {};
    loading_ = {};
}

void TermAdvice::start() {
    const std::size_t most = bench_ ? kMostBenchHeads : kFirstHeads;
    auto started = startBeside([wanted = wish_, stop = stop_, most]() -> SharedBench {
        return std::make_shared<const Bench>(loadBench(*wanted, *stop, most));
    });
    loading_ = started ? std::move(*started) : Coming<SharedBench>();
}

void TermAdvice::show(std::string line) {
    changed_ = changed_ || line != line_;
    line_ = std::move(line);
}

void TermAdvice::takeAnswers() {
    if (auto bench = taken(loading_)) {
        bench_ = std::move(*bench);
        asked_.reset();
    }
    if (auto line = taken(answer_))
        show(std::move(*line));
    if (auto offer = taken(offer_)) {
        offered_ = std::move(*offer);
        termsWanted_ = false;
        changed_ = true;
    }
}

void TermAdvice::ask(const AdviceQuestion& question) {
    auto started = startBeside([bench = bench_, question] { return adviceFor(*bench, question); });
    if (!started)
        return;
    asked_ = question;
    answer_ = std::move(*started);
}

void TermAdvice::askForOffer() {
    auto started = startBeside([bench = bench_, wish = wish_] { return offerTerms(*bench, *wish); });
    if (started)
        offer_ = std::move(*started);
}

bool TermAdvice::look(const AdviceQuestion& question) {
    takeAnswers();
    const bool needsHeads = termsWanted_ || !question.term.term.bytes.empty();
    const bool hasAll = bench_ && (!bench_->cut || bench_->known.heads.size() >= kMostBenchHeads);
    if (wish_ && needsHeads && !hasAll && !loading_.valid())
        start();
    if (question.term.term.bytes.empty()) {
        asked_.reset();
        answer_ = {};
        show({});
    } else if (!bench_) {
        show(kReading);
    } else if (asked_ != question && !answer_.valid()) {
        ask(question);
    }
    if (termsWanted_ && bench_ && !offer_.valid())
        askForOffer();
    return std::exchange(changed_, false);
}

std::string offerText(const OfferedTerm& offered) {
    const TermSuggestion& one = offered.term;
    std::string text =
        fmt::format("{}  {} {}   ({})", one.position == 0 ? std::string("anywhere") : std::to_string(one.position),
                    one.type == 'T' ? "Text" : "HEX", one.term, one.sentence);
    if (offered.ofOneJob)
        text += "   in this job alone: may be a customer's own text";
    return readable(std::string_view(text));
}

}  // namespace quillon
