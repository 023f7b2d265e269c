// SPDX-License-Identifier: MIT
#pragma once

// Reads what stands on a medium, past what the system keeps of it in memory: by O_DIRECT where the volume can, which
// local volumes but tmpfs can; elsewhere the pages are given up first, which drops all that is written back already
// (ext4, xfs, btrfs, NFS and the like). On tmpfs memory is the medium.

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/copy_terms.h"
#include "platform/file.h"

namespace quillon {

class ArrivingFile;

class MediumReader {
public:
    [[nodiscard]] static Result<MediumReader> open(const NativePath& path);
    /// A file in the making, all of which is written.
    [[nodiscard]] static Result<MediumReader> open(const ArrivingFile& file);
    MediumReader(MediumReader&& other) noexcept;
    MediumReader& operator=(MediumReader&&) = delete;
    MediumReader(const MediumReader&) = delete;
    MediumReader& operator=(const MediumReader&) = delete;
    ~MediumReader();

    /// The next bytes, up to 1 MB; empty at the end. Good until the next call.
    [[nodiscard]] Result<std::string_view> next();

private:
    struct Free {
        void operator()(char* buffer) const;
    };
    MediumReader(std::string path, std::size_t piece);
    [[nodiscard]] static Result<MediumReader> begin(int descriptor, const std::string& path);
    void giveUpPages() const;

    std::string path_;
    std::size_t piece_;  // bytes of the buffer
    std::unique_ptr<char, Free> buffer_;
    int descriptor_ = -1;
    bool direct_ = false;
    bool ended_ = false;
};

/// Of all bytes, from the medium. `progress` is told how many bytes came with each piece; false ends it as cancelled.
[[nodiscard]] tl::expected<Sha256Digest, CopyError> hashOfMedium(MediumReader reader,
                                                                 const std::function<bool(std::uint64_t)>& progress);

/// Compares a copy that is on its medium with what was hashed on the way there. A difference is a failure of the target
/// with the place of the first byte that is another one than the source's, as far as the source still gives it.
[[nodiscard]] tl::expected<void, CopyError> compareWithMedium(const ArrivingFile& copy, const Sha256Digest& hash,
                                                              std::string_view source);

}  // namespace quillon
