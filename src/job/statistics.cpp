// SPDX-License-Identifier: MIT
#include "job/statistics.h"

#include <cmath>
#include <utility>

#include "app/file_list.h"
#include "app/list_mark.h"
#include "job/sector_scan_step.h"
#include "platform/folders.h"
#include "text/fields.h"
#include "text/numbers.h"

namespace quillon {

namespace {

bool holds(std::u16string_view result, const std::u16string& message, Recount rule) {
    return rule == Recount::Contained ? result.find(trimRight(std::u16string_view(message))) != result.npos
                                      : result == message;
}

void countResult(JobState& state, const ReportMessages& messages, std::u16string_view result) {
    for (const Grade grade : kRecountOrder) {
        const Recount rule = kGrades[grade].recount;
        if (!holds(result, messages[grade], rule))
            continue;
        ++state.counters[grade];
        if (rule == Recount::Equal)
            return;
    }
    updateQuality(state);
}

// Written out while compiling, as it runs for every row.
template <Quality quality>
double countOf(const JobCounters& counters) {
    const auto add = [&counters]<std::size_t... place>(std::index_sequence<place...>) {
        return ((kGrades.values[place].quality == quality ? std::int64_t{counters.grades.values[place]} : 0) + ...);
    };
    return static_cast<double>(add(std::make_index_sequence<kGradeCount>()));
}

Result<void> recount(const PassContext& context, const ReportMessages& messages, const NativePath& list) {
    auto reader = ListReader::open(list);
    if (!reader)
        return failure(reader.error());
    ListRow row;
    while (reader->next(row)) {
        if (row.isGraded()) {
            ++context.state.counters.rowsRead;
            countResult(context.state, messages, row[ListColumn::Result]);
        }
        if (context.state.options.showProgress)
            context.turn();
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
    state.texts.sectors.clear();
}

void updateQuality(JobState& state) {
    const JobCounters& counters = state.counters;
    if (counters[Grade::Good] <= 0)
        return;
    const auto recovered = countOf<Quality::Recovered>(counters);
    const double quality = recovered / (recovered + countOf<Quality::Lost>(counters));
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

void lookAtPace(JobState& state, std::int64_t milliseconds) {
    if (state.phase == JobPhase::Scanning)
        return;  // goes by bytes, and tells its pace itself
    using Pass = PaceReading::Pass;
    const JobCounters& counters = state.counters;
    PaceReading reading;
    switch (state.phase) {
        case JobPhase::FolderTest:
            reading.pass = Pass::FolderTest;
            break;
        case JobPhase::Walk:
            reading.pass = Pass::Walk;
            break;
        case JobPhase::Testing:
            reading.pass = Pass::Testing;
            break;
        case JobPhase::Copying:
            reading.pass = Pass::Copying;
            break;
        default:
            break;
    }
    reading.milliseconds = milliseconds;
    reading.begun = state.startTick;
    reading.met = state.passes.met;
    reading.listed = counters.files;
    reading.skipped = counters.skipped;
    reading.rows = counters.rowsRead;
    reading.tests = state.options.checkFileQuality;
    reading.copies = state.options.copy;
    state.pace.look(reading);
    state.texts.pace = reading.pass == Pass::None ? std::string() : paceText(state.pace.pace());
}

void timerTick(JobState& state, const Clock& clock) {
    state.texts.statusPanel = clockText(clock.now().secondOfDay() - state.startTime.secondOfDay());
    const auto now = clock.milliseconds();
    lookAtPace(state, now);
    const auto elapsed = now - state.startTick;
    if (elapsed <= 0)
        return;
    const std::int32_t count = state.counters.rowsRead > 0 ? state.counters.rowsRead : state.counters.files;
    const double perMinute = count / (static_cast<double>(elapsed) / 60000.0);
    state.texts.throughput = grouped(std::llround(perMinute)) + " Files per minute";
}

void upDateAllLabels(const PassContext& context, const JobLists& lists, const ReportMessages& messages) {
    JobState& state = context.state;
    if (state.phase != JobPhase::Idle)
        return;
    resetCounters(state);
    state.texts.status = "Updating statistics ...";
    context.turn();
    state.recounting = true;
    const auto list = lists.finalPath();
    if (list && pathExists(*list)) {
        // The list of the job that runs is not whole yet.
        if (state.phase == JobPhase::Idle && isUnfinished(*list))
            context.log("The file list is not whole: its job was cut short", kLightOrange);
        const auto counted = recount(context, messages, *list);
        tellSectors(context, *list);
        state.texts.status = counted ? "Ready" : counted.error().text;
    }
    state.recounting = false;
    state.mayRun = true;
}

}  // namespace quillon
