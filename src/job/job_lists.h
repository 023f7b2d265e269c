// SPDX-License-Identifier: MIT
#pragma once

// The two lists of a job: the raw one, and the final one, `<local root>/<job ID>.csv`. A final list that a new job
// replaces goes under Kept first; when the new one cannot be made, the old one comes back. While it is written, and for
// good if it is left short, a final list has its mark beside it (app/list_mark).

#include <string>

#include "app/event_loop.h"
#include "app/file_list.h"
#include "app/installation.h"
#include "app/kept_files.h"
#include "job/job_state.h"

namespace quillon {

/// What a final list is at its end: Cut when rows of the job are missing in it.
enum class ListEnd { Whole, Cut };

/// Of a list that has been written to its end.
[[nodiscard]] inline ListEnd listEnd(const JobCounters& counters) {
    return counters.lostRows == 0 ? ListEnd::Whole : ListEnd::Cut;
}

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

    /// Opens the final list for writing, empty and marked.
    [[nodiscard]] Result<ListWriter> createFinal() const;
    /// Closes the final list at its end, turning the loop until it is on the medium. A whole one loses its mark; one
    /// that is cut, or cannot be brought to the medium, keeps it.
    [[nodiscard]] Result<void> finishFinal(ListWriter& list, ListEnd end, EventLoop& loop) const;

    /// Makes the final list a copy of the raw list, complete and on the medium or not at all, turning the loop. `end`
    /// tells of the raw list.
    [[nodiscard]] Result<void> copyRawToFinal(ListEnd end, EventLoop& loop) const;

    /// Removes the final list, and its mark behind it.
    [[nodiscard]] Result<void> removeFinal() const;

private:
    template <typename Make>
    [[nodiscard]] auto replacing(Make make) const -> decltype(make(NativePath()));
    [[nodiscard]] Result<NativePath> moveOldAway(const NativePath& list) const;
    static void putBack(const NativePath& keptAt, const NativePath& list, bool wasUnfinished);

    const Installation& installation_;
    KeptFiles& kept_;
    const std::string& jobId_;
};

}  // namespace quillon
