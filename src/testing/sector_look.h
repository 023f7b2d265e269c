// SPDX-License-Identifier: MIT
#pragma once

// Looks at the bytes of a file, as somebody else reads them, for sectors that an imaging tool has marked as unreadable.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "testing/sector_markers.h"
#include "text/byte_ranges.h"

namespace quillon {

struct SectorFindings {
    ByteRanges unread;            ///< marked sectors, and what could not be read now
    std::uint64_t zeroBytes = 0;  ///< in sectors of zeros, which healthy files hold too; holes are among them
    std::string marker;           ///< name of the first marker found; empty for none

    friend bool operator==(const SectorFindings&, const SectorFindings&) = default;
};

/// Is told one file from its beginning to its end, in pieces of any length.
class SectorLook {
public:
    /// `markers` must outlive this, and stay as they are.
    explicit SectorLook(const SectorMarkers& markers);

    /// The next bytes.
    void add(std::string_view bytes);
    /// The next bytes are a hole.
    void addHole(std::uint64_t bytes);
    /// The next bytes cannot be read.
    void addUnread(std::uint64_t bytes);

    /// What was found up to here; the last sector may be cut by the end. The next call of another function begins a
    /// new file.
    [[nodiscard]] SectorFindings take();

private:
    // What one byte of a sector has to be where a marker stands: that of the marker, or that of another place.
    struct Glance {
        std::size_t at = 0;
        std::optional<std::size_t> same;
        char byte = '\0';

        friend bool operator==(const Glance&, const Glance&) = default;
    };
    [[nodiscard]] bool mayBeMarked(std::string_view sector) const;
    void look(std::string_view sector);
    void noteMarker(std::string_view sector);
    void lookAtWaiting();

    const SectorMarkers& markers_;
    std::vector<Glance> glances_;  // one of them for each marker
    bool glancesTell_ = true;      // false: a marker may stand anywhere, and no byte rules it out
    SectorFindings findings_;
    std::uint64_t at_ = 0;  // beginning of the sector in work
    std::string waiting_;   // its bytes so far, when a piece ended within it
};

}  // namespace quillon
