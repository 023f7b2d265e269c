// SPDX-License-Identifier: MIT
#pragma once

// The two lists of a job: the raw one, and the final one, `<local root>/<job ID>.csv`. A final list that a new job
// replaces goes under Kept first; when the new one cannot be made, the old one comes back.

#include <string>

#include "app/event_loop.h"
#include "app/file_list.h"
#include "app/installation.h"
#include "app/kept_files.h"

namespace quillon {

class JobLists {
public:
    /// All must outlive this. Folders and job ID are those of the moment of each call.
    JobLists(const Installation& installation, KeptFiles& kept, const std::string& jobId)
        : installation_(installation), kept_(kept), jobId_(jobId) {}

    [[nodiscard]] const std::string& jobId() const { return jobId_; }
    [[nodiscard]] NativePath rawPath() const { return installation_.rawListPath(); }

    /// Where final lists are kept; empty when no local root is set.
    [[nodiscard]] const NativePath& finalFolder() const { return installation_.paths().localPath; }
    /// BadName for a job ID that cannot be a file name there.
    [[nodiscard]] Result<NativePath> finalPath() const;

    /// Opens the final list for writing, empty.
    [[nodiscard]] Result<ListWriter> createFinal() const;

    /// Makes the final list a copy of the raw list, complete or not at all, turning the loop.
    [[nodiscard]] Result<void> copyRawToFinal(EventLoop& loop) const;

private:
    template <typename Make>
    [[nodiscard]] auto replacing(Make make) const -> decltype(make(NativePath()));

    const Installation& installation_;
    KeptFiles& kept_;
    const std::string& jobId_;
};

}  // namespace quillon
