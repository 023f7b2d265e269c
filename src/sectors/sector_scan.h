// SPDX-License-Identifier: MIT
#pragma once

// Reads every file of a job's source to its end and looks for sectors that an imaging tool has marked, and for those
// that cannot be read now. What is found stands in the evidence; what one scan has found, a later one goes on from.

#include <cstdint>
#include <string>
#include <vector>

#include "evidence/evidence_reader.h"
#include "evidence/sector_notes.h"
#include "platform/file_extents.h"
#include "testing/sector_look.h"

namespace quillon {

struct ScanCounts {
    std::int64_t files = 0;       ///< of the job
    std::int64_t earlier = 0;     ///< of these, looked at by a scan that was stopped
    std::int64_t hurt = 0;        ///< of those looked at now: hold unread sectors
    std::int64_t failed = 0;      ///< could not be opened; nothing is known of them
    std::uint64_t unread = 0;     ///< bytes, of those looked at now, as the next one
    std::uint64_t zeros = 0;      ///< in sectors of zeros, which may be unread ones or not
    std::uint64_t bytes = 0;      ///< to be read by this scan, as the evidence knows the sizes
    std::uint64_t bytesDone = 0;  ///< of these
    bool stopped = false;

    friend bool operator==(const ScanCounts&, const ScanCounts&) = default;
};

/// Who is told of a scan.
class ScanHost {
public:
    virtual ~ScanHost() = default;
    /// Called for each piece of a file. False: the scan is to stop; what it found stays.
    [[nodiscard]] virtual bool goOn(const ScanCounts& counts) = 0;
    /// A file cannot be opened.
    virtual void notOpened(const FileError& why) = 0;
};

/// Scans the job of an evidence file, in the order of the files' places on the disk where the file system tells them,
/// and of the walk elsewhere. A failure is one of the evidence; what was found until then may stand in it.
[[nodiscard]] Result<ScanCounts> scanSectors(const NativePath& evidence, const SectorMarkers& markers,
                                             PlaceReader& places, ScanHost& host);

}  // namespace quillon
