// SPDX-License-Identifier: MIT
#include "programs/list_copy.h"

#include <istream>
#include <ostream>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "answers/copy_outlook.h"
#include "evidence/name_text.h"
#include "platform/folders.h"
#include "programs/list_loop.h"
#include "testing/marker_watch.h"
#include "text/json_text.h"
#include "text/list_text.h"
#include "text/numbers.h"

namespace quillon {

namespace {

using Json = nlohmann::ordered_json;

Json sumsJson(const CopySums& sums) {
    return {{"files", sums.files},     {"bytes", sums.bytes},
            {"copied", sums.copied},   {"copied_bytes", sums.copiedBytes},
            {"failed", sums.failed},   {"already_there", sums.alreadyThere},
            {"damaged", sums.damaged}, {"without_attributes", sums.lessAttributes},
            {"stopped", sums.stopped}};
}

class CopyRun {
public:
    CopyRun(const ListCommandOptions& options, const Paths& paths, const ListStreams& streams)
        : options_(options), order_(options.copy), streams_(streams) {
        order_.database = paths.localDatabase;
        order_.care.watch = markerWatch(paths);
    }

    // Copies the files of one job.
    [[nodiscard]] Result<void> copy(const JobFiles& job) {
        auto copies = FileCopies::begin(job, order_);
        if (!copies)
            return failure(copies.error());
        if (const auto goesOn = look(*copies); !goesOn || !*goesOn)
            return goesOn ? Result<void>() : failure(goesOn.error());
        ListLoop loop(streams_, [&] {
            return fmt::format("{}: {} files, {} bytes", readable(std::string_view(job.id)),
                               grouped(copies->sums().copied), grouped(copies->sums().copiedBytes));
        });
        const auto done = copies->run(loop, [&](const SettledCopy& copy) { ended(copy, loop); });
        loop.clearLine();
        if (!copies->evidenceLoss().empty())
            streams_.err << "quillon-list: the evidence does not know of the copies: " << copies->evidenceLoss()
                         << '\n';
        add(copies->sums());
        return done;
    }

    [[nodiscard]] int tell() const {
        if (options_.json) {
            Json json = sumsJson(sums_);
            json["errors"] = errors_;
            streams_.out << jsonText(json) << '\n';
        } else {
            streams_.out << sumsText(sums_) << '\n';
        }
        return sums_.failed > 0 || sums_.damaged > 0 || sums_.stopped ? kListDiffers : kListSame;
    }

    [[nodiscard]] bool stopped() const { return sums_.stopped; }

private:
    // Tells what will not go well. False: better not to begin.
    [[nodiscard]] Result<bool> look(FileCopies& copies) {
        const auto outlook = outlookOf(copies, order_.target);
        if (!outlook)
            return failure(outlook.error());
        const auto& findings = outlook->findings;
        for (const auto& finding : findings) streams_.err << "quillon-list: " << finding << '\n';
        if (findings.empty() || options_.yes)
            return true;
        if (streams_.in == nullptr)
            return failure(ErrorKind::PathAccess, "nothing is copied; --yes goes on");
        streams_.err << "Go on? [y/N] " << std::flush;
        std::string answer;
        std::getline(*streams_.in, answer);
        sums_.stopped = !answer.starts_with('y') && !answer.starts_with('Y');
        return !sums_.stopped;
    }

    void ended(const SettledCopy& copy, ListLoop& loop) {
        if (copy.result)
            return;
        const std::string why = copy.result.error().text();
        if (options_.json) {
            errors_.push_back({{"path", nameText(copy.source)}, {"error", why}});
            return;
        }
        loop.clearLine();
        streams_.err << "quillon-list: " << readable(std::string_view(copy.source)) << ": " << why << '\n';
    }

    void add(const CopySums& sums) {
        sums_.files += sums.files;
        sums_.bytes += sums.bytes;
        sums_.copied += sums.copied;
        sums_.copiedBytes += sums.copiedBytes;
        sums_.failed += sums.failed;
        sums_.alreadyThere += sums.alreadyThere;
        sums_.damaged += sums.damaged;
        sums_.lessAttributes += sums.lessAttributes;
        sums_.stopped = sums_.stopped || sums.stopped;
    }

    const ListCommandOptions& options_;
    CopyOrder order_;
    const ListStreams& streams_;
    CopySums sums_;
    Json errors_ = Json::array();
};

}  // namespace

Result<int> copyFiles(const std::vector<JobFiles>& jobs, const ListCommandOptions& options, const Paths& paths,
                      const ListStreams& streams) {
    raiseOpenFileLimit();
    CopyRun run(options, paths, streams);
    for (const auto& job : jobs) {
        if (auto copied = run.copy(job); !copied)
            return failure(copied.error());
        if (run.stopped())
            break;
    }
    return run.tell();
}

}  // namespace quillon
