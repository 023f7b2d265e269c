// SPDX-License-Identifier: MIT
#include "editors/kept_of_job.h"

#include <utility>

#include "app/kept_files.h"

namespace quillon {

KeptOfJob::KeptOfJob(const NativePath& listFolder, const std::string& job) {
    if (listFolder.empty() || job.empty())
        return;
    if (auto opened = EvidenceReader::open(listFolder / (job + std::string(kEvidenceEnding)))) {
        places_.emplace(sourceIn(*opened));
        reader_.emplace(std::move(*opened));
    }
}

std::optional<FileHead> KeptOfJob::head(std::string_view path) {
    if (!reader_)
        return std::nullopt;
    if (const auto found = reader_->findPath(places_->below(path), row_); !found || !*found || !row_.head)
        return std::nullopt;
    const auto head = reader_->head(row_);
    return head && *head != nullptr ? std::optional(**head) : std::nullopt;
}

}  // namespace quillon
