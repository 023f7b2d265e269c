// SPDX-License-Identifier: MIT
#include "job/statistics.h"

#include <array>
#include <cmath>

#include "app/file_list.h"
#include "platform/folders.h"
#include "text/fields.h"
#include "text/numbers.h"

namespace quillon {

namespace {

// The messages that are compared for equality, in the order of the comparison, and the counter that each raises. A row
// that equals one of them is done with.
struct Grade {
    Message message;
    std::int32_t JobCounters::*counter;
};
constexpr std::array<Grade, 7> kGrades = {{
    {Message::Good, &JobCounters::good},
    {Message::Corrupt, &JobCounters::corrupt},
    {Message::Unknown, &JobCounters::unknown},
    {Message::NoExtension, &JobCounters::noExtension},
    {Message::TooSmall, &JobCounters::small},
    {Message::ZeroBytes, &JobCounters::zeroBytes},
    {Message::InvalidName, &JobCounters::badName},
}};

void countResult(Job& job, std::u16string_view result) {
    JobCounters& counters = job.state.counters;
    for (const auto& grade : kGrades) {
        if (result == job.messages[grade.message]) {
            ++(counters.*grade.counter);
            return;
        }
    }
    if (result == job.messages[Message::AccessError])
        ++counters.accessErrors;
    if (result == job.messages[Message::Encrypted]) {
        ++counters.encrypted;
        return;
    }
    const auto common = trimRight(std::u16string_view(job.messages[Message::CommonHeader]));
    if (result.find(common) != result.npos)
        ++counters.common;
    updateQuality(job.state);
}

Result<void> recount(Job& job, const NativePath& list) {
    auto reader = ListReader::open(list);
    if (!reader)
        return failure(reader.error());
    ListRow row;
    while (reader->next(row)) {
        if (row.isGraded()) {
            ++job.state.counters.rowsRead;
            countResult(job, row[ListColumn::Result]);
        }
        if (job.state.options.showProgress)
            job.turn();
    }
    if (reader->error())
        return failure(*reader->error());
    return {};
}

}  // namespace

void resetCounters(JobState& state) {
    state.counters = JobCounters{};
    state.texts.quality = "0";
    state.lossReason.clear();
    state.shownQuality = -1;
    state.sizeShown = false;
    state.texts.copied = "0";
}

void updateQuality(JobState& state) {
    const JobCounters& counters = state.counters;
    if (counters.good <= 0)
        return;
    const double recovered = static_cast<double>(counters.good) + counters.common;
    const double quality = recovered / (recovered + counters.corrupt);
    // The text is made anew only when it changes: this runs for every row.
    // Next to a half the text may round otherwise than the figure does: such a text is made in any case.
    const double scaled = quality * 10000;
    const auto shown = std::llround(scaled);
    const bool nearHalf = std::abs(scaled - std::floor(scaled) - 0.5) < 1e-6;
    if (shown == state.shownQuality && !nearHalf)
        return;
    state.shownQuality = nearHalf ? -1 : shown;
    state.texts.quality = percent(quality);
}

void showSize(JobState& state) {
    state.sizeShown = true;
}

std::string sizeLabel(const JobState& state) {
    return state.sizeShown ? sizeText(state.counters.totalBytes) : "0";
}

void timerTick(Job& job) {
    JobState& state = job.state;
    const Clock& clock = job.surroundings().clock;
    state.texts.statusPanel = clockText(clock.now().secondOfDay() - state.startTime.secondOfDay());
    const auto elapsed = clock.milliseconds() - state.startTick;
    if (elapsed <= 0)
        return;
    const std::int32_t count = state.counters.rowsRead > 0 ? state.counters.rowsRead : state.counters.files;
    const double perMinute = count / (static_cast<double>(elapsed) / 60000.0);
    state.texts.throughput = grouped(std::llround(perMinute)) + " Files per minute";
}

void upDateAllLabels(Job& job) {
    JobState& state = job.state;
    resetCounters(state);
    state.texts.status = "Updating statistics ...";
    job.turn();
    state.recounting = true;
    const auto list = job.finalListPath();
    if (list && pathExists(*list)) {
        const auto counted = recount(job, *list);
        state.texts.status = counted ? "Ready" : counted.error().text;
    }
    state.recounting = false;
    state.unlockedByRecount = state.phase != JobPhase::Idle;
    state.mayRun = true;
}

}  // namespace quillon
