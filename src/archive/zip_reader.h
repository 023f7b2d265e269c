// SPDX-License-Identifier: MIT
#pragma once

// Reads archives that somebody else may have made: nothing in one can write outside the target folder or fill the disk.

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "app/kept_files.h"
#include "platform/file.h"
#include "platform/result.h"

namespace quillon {

/// The most bytes that one extraction writes. Far above any database of term files.
inline constexpr std::uint64_t kExtractLimit = std::uint64_t{256} * 1024 * 1024;
/// The most entries that an archive may have.
inline constexpr std::size_t kEntryLimit = 100'000;

/// The most bytes of one file that are held in memory. Far above any term file.
inline constexpr std::uint64_t kHeldEntry = std::uint64_t{16} * 1024 * 1024;

/// What happens to a file that stands in the target folder under the name of an extracted one.
enum class ExistingFiles { Replace, Keep };

struct ExtractOptions {
    std::string mask = "*.*";                 ///< by the last part of the name, without regard to case
    std::uint64_t sizeLimit = kExtractLimit;  ///< unpacked bytes of all files together, as they really come
    bool useFolders = true;                   ///< false: all files directly into the target folder
    std::uint64_t heldBytes = kHeldEntry;     ///< a file with more goes to the volume while it is unpacked
    ExistingFiles existing = ExistingFiles::Replace;
    KeptFiles* kept = nullptr;                     ///< where replaced bytes go; null: nowhere
    std::function<void(double percent)> progress;  ///< 0 to 100, when a file is written and when it has its name
};

struct Extracted {
    std::vector<NativePath> files;  ///< what was written, in the archive's order
    std::size_t alreadyThere = 0;   ///< files that were left as they stood
};

/// Unpacks the files that the mask names. The whole archive is looked at and unpacked once for a trial before the first
/// byte is written, so that a bad one leaves the folder untouched. Refused with a failure, whatever the mask:
/// absolute names, ".." and "." and empty parts, "\", drive letters and ":", control characters, links and devices,
/// names that occur twice (also in another case, or as a file and as a folder), parts longer than a name may be, too
/// many entries, more bytes than the limit, encrypted, cut or damaged files, and a way that leads out of the target
/// folder through a link that stands there.
///
/// The folders Database and Settings and the rule lists get the spelling that the program's paths have, and term files
/// get lower case, whatever case the archive has. A file that stands there under another case is replaced too. Folders
/// are created as needed; each file is written whole or not at all.
[[nodiscard]] Result<Extracted> extractArchive(const NativePath& archive, const NativePath& targetFolder,
                                               const ExtractOptions& options = {});

/// Every name in the archive, UTF-8, as it stands there.
[[nodiscard]] Result<std::vector<std::string>> listArchive(const NativePath& archive);

}  // namespace quillon
