// SPDX-License-Identifier: MIT
#include "job/ends_pass.h"

#include <utility>

#include "job/evidence_facts.h"
#include "text/list_text.h"

namespace quillon {

namespace {

// As for heads: a solid-state disk gives hardly more to more.
constexpr std::size_t kThreads = 16;
constexpr std::chrono::microseconds kSlow{100};
// Changed rows of one transaction.
constexpr int kRowsInPart = 4096;

StandingStill standingStillOf(const PassContext& context) {
    const bool allowed = context.surroundings.loop.mayStandStill() && !context.state.options.hangLimit;
    return allowed ? StandingStill::Allowed : StandingStill::Never;
}

// A file whose head came whole. The end of any other is not asked for.
bool wasReadWhole(const EvidenceRow& row) {
    return row.grade && row.head && row.unread == 0 && row.size > 0;
}

}  // namespace

EndsPass::EndsPass(const PassContext& context)
    : context_(context),
      files_(context.state.care),
      wait_(context),
      standingStill_(standingStillOf(context)),
      ahead_(
          standingStill_, kThreads, kSlow,
          [care = context.state.care]() -> Ahead<Asked>::Work {
              return [files = std::make_shared<SourceFiles>(care), care](Asked& asked) {
                  asked.answer(*care, [&] { asked.tail = lookAtTail(*files, asked.question); });
              };
          },
          AtEnd::LeaveBehind) {
}

Result<void> EndsPass::open(const NativePath& evidence) {
    auto reader = EvidenceReader::open(evidence);
    if (!reader)
        return failure(reader.error());
    auto store = EvidenceStore::open(evidence);
    if (!store)
        return failure(store.error());
    source_ = sourceIn(*reader);
    reader_ = std::make_unique<EvidenceReader>(std::move(*reader));
    store_ = std::make_unique<EvidenceStore>(std::move(*store));
    return {};
}

Result<EndFigures> EndsPass::run(const NativePath& evidence) {
    figures_ = {};
    more_ = true;
    auto done = open(evidence).and_then([this] { return lookAll(); });
    ahead_.release();
    files_.closeFolder();
    if (done) {
        reader_->rest();
        done = store_->commit();
    }
    reader_.reset();
    store_.reset();
    return done.map([this] { return figures_; });
}

bool EndsPass::isStopped() const {
    return context_.state.stopRequested || context_.stopsAtOnce();
}

Result<void> EndsPass::lookAll() {
    while (!isStopped()) {
        if (auto asked = askAhead(); !asked)
            return asked;
        if (ahead_.asked() == 0)
            return {};
        if (auto taken = takeFirst(); !taken)
            return taken;
        context_.turn();
    }
    return {};
}

std::size_t EndsPass::worthAsking() const {
    return context_.state.care->oneAtATime() ? 1 : ahead_.worthAsking();
}

Result<void> EndsPass::askAhead() {
    while (more_ && ahead_.asked() < worthAsking()) {
        const auto found = nextFile();
        if (!found)
            return failure(found.error());
        more_ = *found;
    }
    return {};
}

// Asks for the end of the next file that has one to look at. False: there is none.
Result<bool> EndsPass::nextFile() {
    EndQuestion question;
    while (true) {
        context_.turn();
        if (isStopped())
            return false;
        const auto more = reader_->next(row_);
        if (!more || !*more)
            return more;
        context_.state.progress.value = row_.id;
        if (!row_.tail.empty()) {
            countKnown(row_);
            continue;
        }
        if (!wasReadWhole(row_))
            continue;
        const auto made = makeQuestion(question);
        if (!made)
            return made;
        if (!*made)
            continue;
        ask(std::move(question));
        return true;
    }
}

// False: there is nothing to look at, or a row that the evidence does not vouch for.
Result<bool> EndsPass::makeQuestion(EndQuestion& question) {
    const auto vouched = reader_->isVouchedFor(row_);
    if (!vouched || !*vouched)
        return vouched;
    const auto head = reader_->head(row_);
    if (!head)
        return failure(head.error());
    question = {(source_ / row_.path()).native(), static_cast<std::uint64_t>(row_.size), std::nullopt};
    if (*head == nullptr)  // its bytes were left out
        return true;
    if (!hasTailToLookAt((*head)->given(), question.size))
        return false;
    question.head = std::string((*head)->given());
    return true;
}

void EndsPass::ask(EndQuestion question) {
    Asked& asked = ahead_.ask();
    asked.row = row_;
    asked.question = std::move(question);
    asked.begin(*context_.state.care);
    context_.surroundings.loop.workingOn(asked.question.path);
    ahead_.doLast([](Asked&) { return false; }, [this](Asked& mine) { lookInLine(mine); });
}

void EndsPass::lookInLine(Asked& asked) {
    asked.tail = lookAtTail(files_, asked.question);
    asked.isAnswered = true;
}

// False: the person stops, or it takes too long.
bool EndsPass::waitForFirst() {
    const auto ends = [this] {
        const auto& limit = context_.state.options.hangLimit;
        return isStopped() || (limit && wait_.waited() >= *limit);
    };
    const auto arrives = [this](std::chrono::milliseconds limit) {
        return firstIsAnswered(ahead_, standingStill_, limit, [this](Asked& asked) { lookInLine(asked); });
    };
    return wait_.until(ahead_.first().question.path, arrives, ends);
}

Result<void> EndsPass::takeFirst() {
    wait_.tellCare();
    // Until it has come it is a thread's.
    const std::string path = ahead_.first().question.path;
    EvidenceRow row = ahead_.first().row;
    if (waitForFirst()) {
        const FileTail tail = std::move(ahead_.first().tail);
        ahead_.dropFirst();
        return tail.tail.empty() ? Result<void>() : keep(row, tail);
    }
    ahead_.giveUpFirst();
    if (isStopped())
        return {};
    context_.logAbout(path, "No answer, given up : " + readable(path), kLightRed);
    return keep(row, unreadTail());
}

void EndsPass::countKnown(const EvidenceRow& row) {
    ++figures_.known;
    figures_.doubted += isDoubtedByTail(row) ? 1 : 0;
}

Result<void> EndsPass::keep(const EvidenceRow& before, const FileTail& tail) {
    EvidenceRow row = before;
    row.tail = tail.tail;
    row.tailDetail = tail.tailDetail;
    judgeTail(row);
    ++(row.tail == tails::kUnread ? figures_.unread : figures_.read);
    figures_.doubted += isDoubtedByTail(row) ? 1 : 0;
    if (auto set = store_->setEnd(before, row); !set)
        return set;
    if (++changes_ % kRowsInPart != 0)
        return {};
    reader_->rest();
    return store_->commit();
}

}  // namespace quillon
