// SPDX-License-Identifier: MIT
#include "programs/list_sectors.h"

#include <ostream>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "answers/job_answers.h"
#include "evidence/job_keys.h"
#include "evidence/name_text.h"
#include "evidence/sector_notes.h"
#include "platform/whole_file.h"
#include "sectors/map_join.h"
#include "text/json_text.h"
#include "text/list_text.h"
#include "text/numbers.h"

namespace quillon {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kRangesTold = 4;  // in a line for people

// How many files were looked at, and of which no map can tell.
struct Sums {
    std::int64_t files = 0;
    std::int64_t hurt = 0;
    std::uint64_t unread = 0;  // bytes
    std::int64_t inlined = 0;
    std::int64_t encoded = 0;
    std::int64_t unknown = 0;
    std::int64_t elsewhere = 0;
    std::int64_t failed = 0;
    std::uint64_t unclaimed = 0;  // bytes
};

// What the evidence of a job is to keep; every other file is whole.
struct Findings {
    std::vector<std::int64_t> unknown;  // ids
    std::vector<std::pair<std::int64_t, ByteRanges>> unread;
};

Result<void> keep(const JobFiles& job, const Findings& findings) {
    auto notes = SectorNotes::open(job.evidence);
    if (!notes)
        return failure(notes.error());
    auto kept = notes->setAllWhole();
    for (std::size_t i = 0; kept && i < findings.unknown.size(); ++i) kept = notes->setUnknown(findings.unknown[i]);
    for (std::size_t i = 0; kept && i < findings.unread.size(); ++i)
        kept = notes->setUnread(findings.unread[i].first, findings.unread[i].second);
    return kept.and_then([&] { return notes->setOrigin(job_keys::kByMap); }).and_then([&] { return notes->commit(); });
}

Json rangesJson(const ByteRanges& ranges) {
    Json json = Json::array();
    for (const auto& range : ranges) json.push_back({{"offset", range.begin}, {"bytes", range.bytes()}});
    return json;
}

class Telling {
public:
    Telling(const ListCommandOptions& options, const ListStreams& streams, PlaceReader& places, RescueMap map)
        : options_(options), streams_(streams), places_(places), map_(std::move(map)) {
        json_["version"] = 1;
        json_["files"] = Json::array();
    }

    [[nodiscard]] Result<void> tell(const JobFiles& job) {
        if (job.evidence.empty())
            return failure(ErrorKind::NotFound, readable(std::string_view(job.id)) + " has no evidence");
        Findings findings;
        return look(job, findings).and_then([&] { return keep(job, findings); });
    }

    [[nodiscard]] Result<void> finish() {
        tellSums();
        if (!options_.output)
            return {};
        putInOrder(wanted_);
        const auto saved = saveWholeFile(*options_.output, domainMap(wanted_, map_.end, sectorBytes_));
        return saved ? Result<void>() : failure(saveError(*options_.output, saved.error()));
    }

private:
    [[nodiscard]] Result<void> look(const JobFiles& job, Findings& findings) {
        auto answers = openAnswers(job, ReportMessages::fallback());
        if (!answers)
            return failure(answers.error());
        const auto source = (*answers)->source();
        if (!source)
            return failure(source.error());
        const auto system = places_.systemOf(*source);
        if (!system)
            return failure(system.error());
        const auto place = placeOnMap(*system, map_, options_.deviceOffset);
        if (!place)
            return failure(place.error().kind, readable(std::string_view(*source)) + ": " + place.error().text);
        sectorBytes_ = std::max<std::uint64_t>(sectorBytes_, options_.sectorBytes.value_or(place->sectorBytes));
        MapJoin join(map_, *place);
        auto looked = eachFile(**answers, [&](const EvidenceRow& file) -> Result<void> {
            lookAt(file, places_.placesOf(*source + "/" + file.path()), system->number, join, findings);
            return {};
        });
        sums_.unclaimed += join.unclaimed();
        return looked;
    }

    void lookAt(const EvidenceRow& file, const Result<FilePlaces>& found, std::uint64_t system, MapJoin& join,
                Findings& findings) {
        ++sums_.files;
        if (!found || found->device != system) {
            ++(found ? sums_.elsewhere : sums_.failed);
            if (!found && sums_.failed == 1)
                streams_.err << "quillon-list: " << found.error().text << '\n';
            findings.unknown.push_back(file.id);
            return;
        }
        MappedFile mapped = join.look(*found);
        sums_.inlined += mapped.of(ExtentKind::Inline) > 0;
        sums_.encoded += mapped.of(ExtentKind::Encoded) > 0;
        sums_.unknown += mapped.of(ExtentKind::Unknown) > 0;
        if (mapped.unread.empty()) {
            if (!mapped.isPlaced())
                findings.unknown.push_back(file.id);
            return;
        }
        if (fits(options_.wish, file))
            tellFile(file, mapped);
        findings.unread.emplace_back(file.id, std::move(mapped.unread));
    }

    void tellFile(const EvidenceRow& file, const MappedFile& mapped) {
        const std::uint64_t bytes = bytesIn(mapped.unread);
        ++sums_.hurt;
        sums_.unread += bytes;
        if (options_.output)
            wanted_.insert(wanted_.end(), mapped.onDevice.begin(), mapped.onDevice.end());
        if (options_.json)
            json_["files"].push_back(
                {{"path", nameText(file.path())}, {"bytes", bytes}, {"ranges", rangesJson(mapped.unread)}});
        else
            streams_.out << fmt::format("{:>15}  {}  ({})\n", grouped(static_cast<std::int64_t>(bytes)),
                                        readable(std::string_view(file.path())),
                                        rangesText(mapped.unread, kRangesTold));
    }

    void tellSums() {
        if (options_.json) {
            const std::pair<const char*, std::uint64_t> numbers[] = {
                {"unread_bytes", sums_.unread}, {"other_unread_bytes", sums_.unclaimed}, {"map_end", map_.end}};
            const std::pair<const char*, std::int64_t> counts[] = {
                {"looked_at", sums_.files}, {"inline", sums_.inlined},      {"encoded", sums_.encoded},
                {"unknown", sums_.unknown}, {"elsewhere", sums_.elsewhere}, {"failed", sums_.failed}};
            for (const auto& [name, number] : counts) json_[name] = number;
            for (const auto& [name, number] : numbers) json_[name] = number;
            streams_.out << jsonText(json_) << '\n';
            return;
        }
        Figures figures;
        countSectors(figures, {}, sums_.files, sums_.hurt, static_cast<std::int64_t>(sums_.unread));
        streams_.out << unreadSectorsText(figures) << '\n';
        const std::pair<std::int64_t, const char*> notTold[] = {
            {sums_.inlined, "lie inline, among the tables of the file system: the map cannot tell of them"},
            {sums_.encoded, "are compressed or encrypted on the disk: the map cannot tell of their bytes"},
            {sums_.unknown, "have no known place on the disk yet"},
            {sums_.elsewhere, "lie on another file system that is mounted below the source"},
            {sums_.failed, "could not be looked at"}};
        for (const auto& [files, text] : notTold) {
            if (files > 0)
                streams_.out << fmt::format("{} files {}\n", grouped(files), text);
        }
        if (sums_.unclaimed > 0)
            streams_.out << fmt::format(
                "{} of the unread sectors lie in no file of the list: free, behind a file's end, or tables of the file "
                "system\n",
                sizeText(sums_.unclaimed));
    }

    const ListCommandOptions& options_;
    const ListStreams& streams_;
    PlaceReader& places_;
    RescueMap map_;
    Sums sums_;
    Json json_;
    ByteRanges wanted_;  // on the device, in no order
    std::uint64_t sectorBytes_ = 1;
};

}  // namespace

Result<int> tellSectors(const std::vector<JobFiles>& jobs, const ListCommandOptions& options,
                        const ListStreams& streams, PlaceReader& places) {
    auto map = readRescueMap(options.map);
    if (!map)
        return failure(map.error());
    Telling telling(options, streams, places, std::move(*map));
    for (const auto& job : jobs) {
        if (auto told = telling.tell(job); !told)
            return failure(told.error());
    }
    return telling.finish().map([] { return kListSame; });
}

}  // namespace quillon
