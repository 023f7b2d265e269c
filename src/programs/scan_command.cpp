// SPDX-License-Identifier: MIT
#include "programs/scan_command.h"

#include <ostream>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "answers/figures.h"
#include "app/application_folder.h"
#include "app/kept_files.h"
#include "platform/folder_lock.h"
#include "platform/folders.h"
#include "platform/moment.h"
#include "programs/command_loop.h"
#include "programs/prepare_installation.h"
#include "sectors/sector_scan.h"
#include "text/json_text.h"
#include "text/list_text.h"
#include "text/numbers.h"

namespace quillon {

namespace {

constexpr std::chrono::milliseconds kBetweenLines{200};

// How far the scan is, on a terminal; and what cannot be opened.
class Watching final : public ScanHost {
public:
    Watching(const JobCommandOptions& chosen, const CommandStreams& streams)
        : streams_(streams),
          showLine_(streams.errIsTerminal && !chosen.quiet && !chosen.logJson),
          tellFailures_(!chosen.quiet) {}
    ~Watching() override { clearLine(); }
    Watching(const Watching&) = delete;
    Watching& operator=(const Watching&) = delete;

    bool goOn(const ScanCounts& counts) override {
        if (showLine_ && momentNow() - shown_ >= kBetweenLines)
            showLine(counts);
        return streams_.interrupts() == 0;
    }
    void notOpened(const FileError& why) override {
        clearLine();
        if (tellFailures_)
            streams_.err << "quillon-job: " << why.text << '\n';
    }

private:
    void showLine(const ScanCounts& counts) {
        shown_ = momentNow();
        const double done =
            counts.bytes == 0 ? 0 : static_cast<double>(counts.bytesDone) / static_cast<double>(counts.bytes);
        const double seconds = std::chrono::duration<double>(shown_ - begun_).count();
        const std::string left = done > 0 ? timeLeftText(seconds / done - seconds) + " left" : std::string();
        streams_.err << fmt::format("\r\033[KBad sectors  {} of {}  {}  {}", sizeText(counts.bytesDone),
                                    sizeText(counts.bytes), percent(done), left)
                     << std::flush;
        lineShown_ = true;
    }
    void clearLine() {
        if (lineShown_)
            streams_.err << "\r\033[K" << std::flush;
        lineShown_ = false;
    }

    const CommandStreams& streams_;
    const bool showLine_;
    const bool tellFailures_;
    const Moment begun_ = momentNow();
    Moment shown_ = begun_;
    bool lineShown_ = false;
};

ScanEnd scanOf(const NativePath& list, const Installation& installation, ScanHost& host) {
    const NativePath evidence = evidenceBeside(list);
    if (!pathExists(evidence))
        return {kExitNoList, "no evidence", readable(evidence.native()) + " is not there", {}};
    const auto lock = FolderLock::tryToTake(installation.appFolder());
    if (!lock)
        return {kExitNoList, "failed", lock.error().text, {}};
    if (!*lock)
        return {kExitBusy, "busy", "a job runs in the application folder", {}};
    const auto markers = loadSectorMarkers(installation.paths());
    if (!markers)
        return {kExitNoList, "failed", markers.error().text, {}};
    SystemPlaces places;
    const auto counts = scanSectors(evidence, *markers, places, host);
    if (!counts)
        return {kExitNoList, "failed", counts.error().text, {}};
    if (counts->stopped)
        return {kExitStopped, "stopped", "the next scan goes on from here", *counts};
    return {counts->failed > 0 ? kExitLosses : kExitComplete, "complete", {}, *counts};
}

// An installation that is not whole has told so itself.
ScanEnd scanDoneJob(const JobCommandOptions& chosen, const CommandStreams& streams) {
    Installation installation(chosen.appFolder ? *chosen.appFolder : applicationFolder());
    if (installation.appFolder().empty()) {
        const char* const why = "the folder of the program cannot be found; give --app";
        streams.err << "quillon-job: " << why << '\n';
        return {kExitNoList, "failed", why, {}};
    }
    if (!prepareInstallation(installation, streams.err, chosen.quiet))
        return {kExitNoList, "failed", rowOf(EndCause::NotSetUp).text, {}};
    return scanJob(installation.paths().localPath / (chosen.jobId + ".csv"), installation, chosen, streams);
}

}  // namespace

ScanEnd scanJob(const NativePath& list, const Installation& installation, const JobCommandOptions& chosen,
                const CommandStreams& streams) {
    Watching watching(chosen, streams);
    ScanEnd end = scanOf(list, installation, watching);
    if (!end.detail.empty())
        streams.err << "quillon-job: " << end.word << ": " << end.detail << '\n';
    return end;
}

nlohmann::ordered_json scanAsJson(const ScanEnd& end) {
    const ScanCounts& counts = end.counts;
    return {{"end", end.word},
            {"detail", end.detail},
            {"status", end.status},
            {"files", counts.files},
            {"earlier", counts.earlier},
            {"unread_files", counts.hurt},
            {"unread_bytes", counts.unread},
            {"zero_bytes", counts.zeros},
            {"failed", counts.failed},
            {"bytes", counts.bytes},
            {"bytes_done", counts.bytesDone}};
}

std::string scanText(const ScanCounts& counts) {
    Figures figures;
    countSectors(figures, {}, counts.files - counts.earlier, counts.hurt, static_cast<std::int64_t>(counts.unread));
    std::string text = unreadSectorsText(figures) + "\n";
    text += fmt::format("Sectors of zeros, read or not : {}\n", sizeText(counts.zeros));
    if (counts.earlier > 0)
        text += fmt::format("Looked at by an earlier scan : {}\n", grouped(counts.earlier));
    if (counts.failed > 0)
        text += fmt::format("Could not be opened : {}\n", grouped(counts.failed));
    return text;
}

int runScanCommand(const JobCommandOptions& chosen, const CommandStreams& streams) {
    const ScanEnd end = scanDoneJob(chosen, streams);
    if (chosen.json) {
        nlohmann::ordered_json json = {{"version", 1}, {"scan_sectors", readable(std::string_view(chosen.jobId))}};
        json.update(scanAsJson(end));
        streams.out << jsonText(json) << '\n';
    } else if (end.status == kExitComplete || end.status == kExitLosses) {
        streams.out << scanText(end.counts);
    }
    streams.out.flush();
    if (streams.out)
        return end.status;
    streams.err << "quillon-job: the result could not be written to standard output\n";
    return end.status == kExitComplete ? kExitLosses : end.status;
}

}  // namespace quillon
