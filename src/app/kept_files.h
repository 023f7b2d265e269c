// SPDX-License-Identifier: MIT
#pragma once

// Keeps the old bytes of data that the system removes or overwrites by its rules, under
// `<local root>/Kept/<date and time>/`. What is seen in the data folders is the same; nothing is gone for good. The
// program never empties that folder.

#include <optional>
#include <string>
#include <string_view>

#include "app/installation.h"
#include "platform/dates.h"

namespace quillon {

/// Of the names of evidence files, behind the job ID.
inline constexpr std::string_view kEvidenceEnding = ".sqlite";

/// Where the evidence of a list stands: "1234.csv" -> "1234.sqlite".
[[nodiscard]] NativePath evidenceBeside(const NativePath& list);
/// Where the evidence of an earlier run stands while a run goes on with it. No job ID leads to this name.
[[nodiscard]] NativePath earlierEvidenceBeside(const NativePath& list);
/// Where SQLite keeps what is to be undone in it.
[[nodiscard]] NativePath journalOf(const NativePath& evidence);

/// Whether each file goes into the folder of its own moment, or all of them into the folder of the first: what one
/// step takes away is put back as one.
enum class KeptBy { File, Rescue };

class KeptFiles {
public:
    /// Both references must outlive this.
    KeptFiles(const Installation& installation, const Clock& clock, KeptBy by = KeptBy::File)
        : installation_(installation), clock_(clock), by_(by) {}

    /// Moves a file under Kept, byte for byte. A file of the local root keeps its place below it
    /// (`Database/jpg.dat`); any other goes by its name. Without a local root the file's own folder takes its place. On
    /// failure the file is where it was. Gives the place it went to.
    [[nodiscard]] Result<NativePath> moveAway(const NativePath& file);

    /// The same for the evidence beside a list, with what a killed job left half done in it. None is a success without
    /// a place.
    [[nodiscard]] Result<std::optional<NativePath>> moveEvidenceAway(const NativePath& list);

    /// Puts a copy under Kept and leaves the file alone. A missing file is a success without a place.
    [[nodiscard]] Result<std::optional<NativePath>> copyAway(const NativePath& file);

private:
    [[nodiscard]] Result<NativePath> placeFor(const NativePath& file);
    [[nodiscard]] std::string momentFolder();

    const Installation& installation_;
    const Clock& clock_;
    KeptBy by_;
    std::string moment_;  // of the first file
};

}  // namespace quillon
