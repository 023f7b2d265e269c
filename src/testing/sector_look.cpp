// SPDX-License-Identifier: MIT
#include "testing/sector_look.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace quillon {

namespace {

bool isZero(std::string_view bytes) {
    return bytes.front() == '\0' && std::memcmp(bytes.data(), bytes.data() + 1, bytes.size() - 1) == 0;
}

}  // namespace

SectorLook::SectorLook(const SectorMarkers& markers) : markers_(markers) {
    for (const auto& marker : markers.all()) {
        if (marker.position == 0 && !marker.repeating)
            glancesTell_ = false;
        const Glance glance = marker.position == 0 ? Glance{0, marker.bytes.size() % kMarkedSectorBytes, '\0'}
                                                   : Glance{marker.position - 1, std::nullopt, marker.bytes.front()};
        if (std::ranges::find(glances_, glance) == glances_.end())
            glances_.push_back(glance);
    }
}

// Nearly every sector is ruled out by a byte for each marker, so that looking costs little beside reading.
bool SectorLook::mayBeMarked(std::string_view sector) const {
    if (!glancesTell_ || sector.size() < kMarkedSectorBytes)
        return true;
    return std::ranges::any_of(glances_, [sector](const Glance& glance) {
        return sector[glance.at] == (glance.same ? sector[*glance.same] : glance.byte);
    });
}

void SectorLook::look(std::string_view sector) {
    if (isZero(sector))
        findings_.zeroBytes += sector.size();
    else if (mayBeMarked(sector))
        noteMarker(sector);
    at_ += sector.size();
}

void SectorLook::noteMarker(std::string_view sector) {
    const SectorMarker* marker = markers_.find(sector);
    if (marker == nullptr)
        return;
    append(findings_.unread, {at_, at_ + sector.size()});
    if (findings_.marker.empty())
        findings_.marker = marker->name;
}

void SectorLook::lookAtWaiting() {
    if (!waiting_.empty())
        look(waiting_);
    waiting_.clear();
}

void SectorLook::add(std::string_view bytes) {
    if (!waiting_.empty()) {
        const auto missing = std::min(kMarkedSectorBytes - waiting_.size(), bytes.size());
        waiting_ += bytes.substr(0, missing);
        bytes.remove_prefix(missing);
        if (waiting_.size() == kMarkedSectorBytes)
            lookAtWaiting();
    }
    // A file goes on at the beginning of a sector, but for what stands behind an unread piece of odd length.
    while (bytes.size() >= kMarkedSectorBytes && at_ % kMarkedSectorBytes == 0) {
        look(bytes.substr(0, kMarkedSectorBytes));
        bytes.remove_prefix(kMarkedSectorBytes);
    }
    if (const auto odd = at_ % kMarkedSectorBytes; odd != 0 && !bytes.empty()) {
        const auto rest = std::min(kMarkedSectorBytes - odd, bytes.size());
        at_ += rest;
        add(bytes.substr(rest));
        return;
    }
    waiting_ += bytes;
}

void SectorLook::addHole(std::uint64_t bytes) {
    lookAtWaiting();
    findings_.zeroBytes += bytes;
    at_ += bytes;
}

void SectorLook::addUnread(std::uint64_t bytes) {
    lookAtWaiting();
    append(findings_.unread, {at_, at_ + bytes});
    at_ += bytes;
}

SectorFindings SectorLook::take() {
    lookAtWaiting();
    at_ = 0;
    return std::exchange(findings_, {});
}

}  // namespace quillon
