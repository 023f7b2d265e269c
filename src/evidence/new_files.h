// SPDX-License-Identifier: MIT
#pragma once

// Files that come into the evidence together, as rows of its table. For the sources of this folder only.

#include <array>
#include <string>
#include <vector>

#include "evidence/evidence_row.h"
#include "evidence/offered_rows.h"

namespace quillon {

class NewFiles final : public OfferedRows {
public:
    /// Makes these rows known to the database, which must not outlive them, and gives the statement that inserts them.
    [[nodiscard]] Result<Statement> prepareInsert(Database& database) const;

    void clear() { count_ = 0; }
    /// `row` must stay until it has been inserted. `folder`: its id.
    void add(const EvidenceRow& row, std::int64_t folder);

    [[nodiscard]] std::size_t count() const override { return count_; }
    void give(std::size_t row, int column, OfferedValue& value) const override;

private:
    struct Column;
    struct File {
        const EvidenceRow* row = nullptr;
        std::int64_t folder = 0;
        std::string name;  // as text
    };
    static const std::array<Column, 24> kColumns;

    std::vector<File> files_;  // keep their room
    std::size_t count_ = 0;
};

}  // namespace quillon
