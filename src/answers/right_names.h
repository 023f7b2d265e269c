// SPDX-License-Identifier: MIT
#pragma once

// Which extension a file's first bytes prove, for files that have none or a wrong one.

#include <memory>
#include <string>

#include "evidence/evidence_row.h"
#include "platform/source_files.h"

namespace quillon {

class RightNames {
public:
    /// `database`: the folder of the term files, with the rule lists beside it.
    explicit RightNames(NativePath database);
    RightNames(RightNames&& other) noexcept;
    ~RightNames();

    /// The extension of the one format that the file is of, in lower case; empty where no format or several are proven,
    /// or the one that it has. What the evidence has found counts. Where it names none, as of a file without an
    /// extension, which is not opened by a test, the first bytes are read at `path`.
    [[nodiscard]] std::string extensionOf(const EvidenceRow& file, const std::string& path);

private:
    struct Rules;
    [[nodiscard]] std::string byHead(const std::string& path);

    NativePath database_;
    std::unique_ptr<Rules> rules_;  // made when the first head is read
    SourceFiles files_;
};

}  // namespace quillon
