// SPDX-License-Identifier: MIT
#include "testing/sector_markers.h"

#include <algorithm>
#include <charconv>

#include <fmt/format.h>

#include "platform/folders.h"
#include "testing/header_term.h"
#include "testing/rule_line.h"
#include "testing/shared_copy.h"
#include "text/fields.h"
#include "text/page_text.h"

namespace quillon {

namespace {

// Where each comes from stands in data/starter/README.md.
constexpr const char* kPublished[] = {
    "0,BAD SECTOR,T,R,BAD SECTOR",
    "0,BAD SECTOR ,T,R,BAD SECTOR",
    "0,BAD-SECTOR ,T,R,BAD-SECTOR",
    "0,NON-RESCUED-SECTOR ,T,R,NON-RESCUED-SECTOR",
    "1,0A2320706F736974696F6E203078,H,O,ddrescue location",
    "1,426164536563746F5200,H,O,ntfsclone rescue",
    "1,BadSecto?\?\?\?,T,O,ntfsclone rescue",
    "1,BADSECTO?\?\?\?,T,O,partclone rescue",
    "0,-=[BAD SECTOR]=-,T,R,floppy image",
};

std::size_t positionIn(std::string_view field) {
    std::size_t position = 0;
    const auto text = trim(field);
    const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), position);
    return problem == std::errc() && end == text.data() + text.size() ? position : 0;
}

bool isOneByte(std::string_view bytes) {
    return bytes.find_first_not_of(bytes.front()) == bytes.npos;
}

// True when `text` is a repetition of its first `period` bytes; the last one may be cut. Nearly every sector is
// told by one byte.
bool repeats(std::string_view text, std::size_t period) {
    return text.size() <= period ||
           (text[0] == text[period] && text.substr(period) == text.substr(0, text.size() - period));
}

// A fill may go on from the sector before, so it begins with any of the marker's bytes.
bool isFilled(std::string_view sector, std::string_view marker) {
    if (sector.size() < std::max(marker.size(), kLeastMarkerBytes) || !repeats(sector, marker.size()))
        return false;
    const std::string twice = std::string(marker) + std::string(marker);
    return twice.find(sector.substr(0, marker.size())) != std::string::npos;
}

bool stands(const SectorMarker& marker, std::string_view sector) {
    const std::string_view bytes = marker.bytes;
    if (marker.position == 0)
        return marker.repeating ? isFilled(sector, bytes) : sector.find(bytes) != sector.npos;
    if (sector.size() < marker.position - 1 + kLeastMarkerBytes)
        return false;
    const std::string_view rest = sector.substr(marker.position - 1);
    const std::size_t compared = std::min(rest.size(), bytes.size());
    return rest.front() == bytes.front() && rest.substr(0, compared) == bytes.substr(0, compared) &&
           (!marker.repeating || repeats(rest, bytes.size()));
}

}  // namespace

MarkerFault faultOf(const SectorMarker& marker) {
    if (marker.bytes.empty())
        return MarkerFault::Empty;
    if (marker.bytes.find_first_not_of('\0') == std::string::npos)
        return MarkerFault::ZerosAlone;
    if (marker.bytes.size() + std::max<std::size_t>(marker.position, 1) - 1 > kMarkedSectorBytes)
        return MarkerFault::TooLong;
    if (marker.repeating)
        return MarkerFault::None;
    if (marker.bytes.size() < kLeastMarkerBytes)
        return MarkerFault::TooShort;
    return isOneByte(marker.bytes) ? MarkerFault::OneByte : MarkerFault::None;
}

SectorMarker markerOfLine(std::string_view line) {
    const auto fields = splitFields(line);
    if (fields.size() < 4)
        return {};
    SectorMarker marker{positionIn(fields[0]), std::string(fields[1]), fields[3] != "O", {}};
    if (fields[2] == "H")
        marker.bytes = hexToText(fields[1]);
    marker.name = fields.size() > 4 ? toUtf8(PageText{std::string(trim(fields[4]))}) : std::string();
    if (faultOf(marker) != MarkerFault::None)
        marker.bytes.clear();
    return marker;
}

bool standsAsText(std::string_view bytes) {
    return std::ranges::all_of(bytes, [](char c) { return c >= 0x20 && c < 0x7F && c != ','; });
}

std::string lineOfMarker(const SectorMarker& marker, bool hexadecimal) {
    const bool text = !hexadecimal && standsAsText(marker.bytes);
    std::string shown = marker.bytes;
    if (!text) {
        shown.clear();
        for (const char c : marker.bytes) shown += fmt::format("{:02X}", static_cast<unsigned char>(c));
    }
    return fmt::format("{},{},{},{},{}", marker.position, shown, text ? 'T' : 'H', marker.repeating ? 'R' : 'O',
                       toPage(std::string_view(marker.name)).bytes);
}

SectorMarkers SectorMarkers::published() {
    SectorMarkers markers;
    markers.assign(publishedLines());
    return markers;
}

std::vector<std::string_view> SectorMarkers::publishedLines() {
    return {std::begin(kPublished), std::end(kPublished)};
}

void SectorMarkers::assign(const std::vector<std::string_view>& lines) {
    markers_.clear();
    for (const auto line : lines) {
        if (auto marker = markerOfLine(line); !marker.bytes.empty())
            markers_.push_back(std::move(marker));
    }
}

const SectorMarker* SectorMarkers::find(std::string_view sector) const {
    const auto found = std::ranges::find_if(
        markers_, [bytes = sector.substr(0, kMarkedSectorBytes)](const auto& marker) { return stands(marker, bytes); });
    return found == markers_.end() ? nullptr : &*found;
}

Result<LostNote> fetchSectorMarkers(const Paths& paths, KeptFiles& kept, const std::string& job) {
    const NativePath shared = fileIn(paths.sharedSettings, kBadSectorsFileName);
    if (!paths.useSharedDb || !pathExists(shared))
        return LostNote();
    return copyNoted(shared, fileIn(paths.localSettings, kBadSectorsFileName), kept, paths.localSettings,
                     changeByJob(job));
}

Result<SectorMarkers> loadSectorMarkers(const Paths& paths) {
    const auto bytes = readRuleFile(fileIn(paths.localSettings, kBadSectorsFileName));
    if (!bytes && bytes.error().kind == ErrorKind::NotFound)
        return SectorMarkers::published();
    if (!bytes)
        return failure(bytes.error());
    SectorMarkers markers;
    markers.assign(splitLines(*bytes));
    return markers;
}

}  // namespace quillon
