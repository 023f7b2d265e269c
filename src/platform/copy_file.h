// SPDX-License-Identifier: MIT
#pragma once

// Copies one file so that the target is complete or absent: it gets its name when its bytes, times and mode are there.
// Holes stay holes. A target that exists survives a failed copy.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/arriving_file.h"
#include "platform/copy_terms.h"
#include "platform/file.h"
#include "platform/folders.h"
#include "platform/result.h"
#include "platform/source_files.h"

namespace quillon {

/// A copy that has all but its name.
struct PreparedCopy {
    ArrivingFile file;
    CopyFacts facts;
};

/// Copies many files one after the other; consecutive sources of one folder share a folder handle, and so do
/// consecutive targets. Paths may be of any length.
class FileCopier {
public:
    explicit FileCopier(CopyManner manner = {}) : manner_(std::move(manner)) {}

    /// Copies `source` (a regular file, opened as SourceFiles does) to `target`, whose folder must exist.
    [[nodiscard]] tl::expected<void, CopyError> copy(std::string_view source, std::string_view target,
                                                     const CopyProgress& progress);

    /// All of a copy but the name, which the file gets when it arrives. A file of more than `largest` bytes is left
    /// alone, as a failure of the source.
    [[nodiscard]] tl::expected<PreparedCopy, CopyError> prepare(std::string_view source, std::string_view target,
                                                                std::uint64_t largest, const CopyProgress& progress);

private:
    [[nodiscard]] tl::expected<void, CopyError> copyOnce(std::string_view source, std::string_view target,
                                                         const CopyProgress& progress);

    CopyManner manner_;
    SourceFiles sources_;
    ArrivalFolder targets_;
    std::vector<char> buffer_;
    std::unique_ptr<ByteWatch> watch_;  // made with the first copy
};

/// A data file of the program's own, which is small: its bytes, and the modification time that it had before they were
/// read. Whoever goes by the time then sees a file that changed meanwhile as changed.
struct DataFile {
    std::string bytes;
    FileTime modified;
};

[[nodiscard]] Result<DataFile> readDataFile(const NativePath& path);

/// Replaces a file as a whole. It has the modification time as its file system keeps it.
[[nodiscard]] Result<void> saveDataFile(const NativePath& path, const DataFile& file);

/// Both, one after the other.
[[nodiscard]] Result<void> copyDataFile(const NativePath& source, const NativePath& target);

}  // namespace quillon
