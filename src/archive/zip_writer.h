// SPDX-License-Identifier: MIT
#pragma once

// Writes one new archive: under a temporary name in its folder, put in place only when it is complete. Whatever fails
// on the way, a full disk or a killed process included, no half archive stands under the final name.

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "app/event_loop.h"
#include "app/kept_files.h"
#include "platform/file.h"
#include "platform/result.h"

namespace quillon {

struct ZipOptions {
    std::optional<std::string> password;  ///< UTF-8; files are then encrypted by AES-256
    /// 0 to 100 of the bytes of all files, while the archive is written; may be empty.
    std::function<void(double percent)> progress;
    std::function<bool()> cancelled;  ///< true ends the writing as a failure; may be empty
    EventLoop* loop = nullptr;        ///< turned while the archive is written and compared; may be null
    KeptFiles* kept = nullptr;        ///< where an archive goes that stands under the name at the end; null: nowhere
};

/// One file of an archive.
struct ZipInput {
    NativePath file;
    std::string name;  ///< in the archive, parts split by "/"; bytes that are not UTF-8 are stored as they are
};

class ZipWriter {
public:
    ZipWriter(NativePath archive, ZipOptions options);
    ~ZipWriter();
    ZipWriter(const ZipWriter&) = delete;
    ZipWriter& operator=(const ZipWriter&) = delete;

    /// Takes a regular, readable file into the archive. In its name every "\" and control character becomes "_", and a
    /// name that is taken gets " (2)" and so on ahead of its extension. After a failure the files before are still in.
    [[nodiscard]] Result<void> add(const NativePath& file, const std::string& name);

    /// What was added, under the names that the archive has.
    [[nodiscard]] const std::vector<ZipInput>& inputs() const { return inputs_; }

    /// Writes the archive, brings it to the medium and puts it in place. Without any file nothing is written. On
    /// failure there is no archive; one that stood under the name still does.
    [[nodiscard]] Result<void> finish();

private:
    struct Open;
    struct Watch;

    [[nodiscard]] Result<void> openTemporary();
    [[nodiscard]] std::string freeName(const std::string& name) const;
    [[nodiscard]] Result<void> writeTemporary();
    [[nodiscard]] Result<void> putInPlace();

    NativePath archive_;
    NativePath temporary_;
    ZipOptions options_;
    std::unique_ptr<Open> open_;  // libzip's handle, until `finish`
    std::vector<ZipInput> inputs_;
    std::vector<std::uint64_t> sizes_;  // of the inputs
    std::unordered_set<std::string> names_;
};

/// Reads a finished archive back, of which `inputs` are the files in their order: for each input true when the archive
/// holds exactly the bytes of the file under its name. Nothing is true when the archive cannot be read.
[[nodiscard]] std::vector<bool> equalToFiles(const NativePath& archive, const std::vector<ZipInput>& inputs,
                                             const ZipOptions& options);

}  // namespace quillon
