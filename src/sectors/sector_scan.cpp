// SPDX-License-Identifier: MIT
#include "sectors/sector_scan.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <limits>

#include "evidence/job_keys.h"
#include "platform/moment.h"
#include "platform/source_files.h"

namespace quillon {

namespace {

constexpr std::size_t kPieceBytes = std::size_t{1} << 20U;
constexpr std::size_t kCarefulBytes = 4096;  // behind a failure: what the system reads at least
constexpr std::chrono::seconds kBetweenCommits{1};

// A file to be read.
struct Waiting {
    std::uint64_t place = 0;
    std::int64_t id = 0;
    std::uint64_t bytes = 0;
};

class Scan {
public:
    Scan(EvidenceReader reader, SectorNotes notes, const SectorMarkers& markers, PlaceReader& places, ScanHost& host)
        : reader_(std::move(reader)),
          notes_(std::move(notes)),
          places_(places),
          host_(host),
          look_(markers),
          piece_(kPieceBytes) {}

    [[nodiscard]] Result<ScanCounts> run() {
        return begin()
            .and_then([&] { return gather(); })
            .and_then([&] { return readAll(); })
            .and_then([&] { return counts_.stopped ? Result<void>() : notes_.setOrigin(job_keys::kByScan); })
            .and_then([&] { return notes_.commit(); })
            .map([&] { return counts_; });
    }

private:
    [[nodiscard]] Result<void> begin() {
        for (const char* key : {job_keys::kSource, job_keys::kSourceBytes}) {
            const auto text = reader_.jobText(key);
            if (!text)
                return failure(text.error());
            source_ = text->value_or(source_);
        }
        const auto origin = reader_.jobText(job_keys::kSectors);
        if (!origin)
            return failure(origin.error());
        goesOn_ = *origin == job_keys::kByScanInPart;
        if (goesOn_)
            return {};
        return notes_.forgetAll().and_then([&] { return notes_.setOrigin(job_keys::kByScanInPart); }).and_then([&] {
            return notes_.commit();
        });
    }

    // Files in the order of their places; those without one come last, in the order of the walk.
    [[nodiscard]] Result<void> gather() {
        EvidenceRow row;
        while (true) {
            const auto more = reader_.next(row);
            if (!more)
                return failure(more.error());
            if (!*more)
                break;
            ++counts_.files;
            if (goesOn_ && row.badBytes) {
                ++counts_.earlier;
                continue;
            }
            const auto place = places_.firstPlaceOf(pathOf(row));
            const auto bytes = static_cast<std::uint64_t>(std::max<std::int64_t>(row.size, 0));
            waiting_.push_back({place.value_or(std::numeric_limits<std::uint64_t>::max()), row.id, bytes});
            counts_.bytes += bytes;
            if (!host_.goOn(counts_)) {
                counts_.stopped = true;
                return {};
            }
        }
        std::ranges::stable_sort(waiting_, {}, &Waiting::place);
        return {};
    }

    [[nodiscard]] Result<void> readAll() {
        Moment committed = momentNow();
        EvidenceRow row;
        for (const auto& file : waiting_) {
            counts_.stopped = counts_.stopped || !host_.goOn(counts_);
            if (counts_.stopped)
                break;
            const auto found = reader_.findId(file.id, row);
            if (!found)
                return failure(found.error());
            if (*found) {
                if (auto kept = readFile(pathOf(row), file); !kept)
                    return kept;
            }
            if (momentNow() - committed < kBetweenCommits)
                continue;
            if (auto written = notes_.commit(); !written)
                return written;
            committed = momentNow();
        }
        return {};
    }

    [[nodiscard]] Result<void> readFile(const std::string& path, const Waiting& waiting) {
        const std::uint64_t before = counts_.bytesDone;
        auto file = files_.open(path);
        if (!file) {
            ++counts_.failed;
            host_.notOpened(file.error());
            counts_.bytesDone = before + waiting.bytes;
            return {};
        }
        bool whole = true;
        std::uint64_t at = 0;
        while (whole && readPiece(*file, at)) {
            counts_.bytesDone = before + std::min(at, waiting.bytes);
            whole = host_.goOn(counts_);
        }
        const SectorFindings found = look_.take();
        if (!whole) {
            counts_.stopped = true;
            return {};
        }
        counts_.bytesDone = before + waiting.bytes;
        counts_.hurt += found.unread.empty() ? 0 : 1;
        counts_.unread += bytesIn(found.unread);
        counts_.zeros += found.zeroBytes;
        return notes_.setUnread(waiting.id, found.unread);
    }

    // Hands on what stands at `at`; false at the end of the file.
    bool readPiece(File& file, std::uint64_t& at) {
        const auto count = file.read(piece_);
        if (!count)
            return readCarefully(file, at);
        look_.add({reinterpret_cast<const char*>(piece_.data()), *count});
        at += *count;
        return *count == piece_.size();
    }

    // A piece that cannot be read as a whole, in the smallest pieces that the system reads.
    bool readCarefully(File& file, std::uint64_t& at) {
        const auto size = file.size();
        const std::uint64_t end = std::min(at + kPieceBytes, size.value_or(at));
        if (at >= end)
            return false;
        for (; at < end; at += kCarefulBytes) {
            const std::size_t wanted = std::min<std::uint64_t>(kCarefulBytes, end - at);
            const auto count = file.seek(at).and_then([&] { return file.read({piece_.data(), wanted}); });
            if (!count)
                look_.addUnread(wanted);
            else
                look_.add({reinterpret_cast<const char*>(piece_.data()), *count});
        }
        at = end;
        return file.seek(at).has_value();
    }

    [[nodiscard]] std::string pathOf(const EvidenceRow& row) const { return source_ + "/" + row.path(); }

    EvidenceReader reader_;
    SectorNotes notes_;
    PlaceReader& places_;
    ScanHost& host_;
    SectorLook look_;
    SourceFiles files_;
    std::vector<std::byte> piece_;
    std::string source_;
    std::vector<Waiting> waiting_;
    ScanCounts counts_;
    bool goesOn_ = false;
};

}  // namespace

Result<ScanCounts> scanSectors(const NativePath& evidence, const SectorMarkers& markers, PlaceReader& places,
                               ScanHost& host) {
    auto reader = EvidenceReader::open(evidence);
    if (!reader)
        return failure(reader.error());
    auto notes = SectorNotes::open(evidence);
    if (!notes)
        return failure(notes.error());
    return Scan(std::move(*reader), std::move(*notes), markers, places, host).run();
}

}  // namespace quillon
