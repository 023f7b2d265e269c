// SPDX-License-Identifier: MIT
#pragma once

// Files and bytes for each extension and reason, kept with the rows. For the sources of this folder only.

#include <utility>
#include <vector>

#include "evidence/database.h"
#include "evidence/evidence_row.h"
#include "text/text_map.h"

namespace quillon {

class Totals {
public:
    [[nodiscard]] static Result<Totals> prepare(Database& database);

    /// A row came.
    [[nodiscard]] Result<void> add(const EvidenceRow& row) { return count(row, 1); }
    /// A row went, as it was.
    [[nodiscard]] Result<void> remove(const EvidenceRow& row) { return count(row, -1); }
    /// What is known of the sectors of a file changed, and nothing else of it.
    void changeSectors(std::string_view extension, std::optional<Grade> grade, std::optional<std::int64_t> before,
                       std::optional<std::int64_t> now);

    /// Writes what changed since the last call.
    [[nodiscard]] Result<void> write();

private:
    struct Sum {
        std::int64_t files = 0;
        std::int64_t bytes = 0;
    };
    // Of the numbers that came, as there are few of them.
    class Sums {
    public:
        /// By number of the grade or reason; a row without a grade counts as not tested.
        [[nodiscard]] Sum& operator[](std::int64_t number);
        [[nodiscard]] auto begin() const { return all_.begin(); }
        [[nodiscard]] auto end() const { return all_.end(); }

    private:
        std::vector<std::pair<std::int64_t, Sum>> all_;
    };
    struct OfExtension {
        Sums grades;
        Sums reasons;
    };

    Totals(Statement extensions, Statement reasons)
        : extensions_(std::move(extensions)), reasons_(std::move(reasons)) {}
    [[nodiscard]] Result<void> count(const EvidenceRow& row, std::int64_t sign);
    [[nodiscard]] OfExtension& of(std::string_view extension);
    static void countSectors(Sums& sums, std::optional<Grade> grade, std::optional<std::int64_t> badBytes,
                             std::int64_t sign);

    Statement extensions_;
    Statement reasons_;
    TextMap<char, OfExtension> changes_;
};

/// Counts anew what is known of the sectors of all files, and says that it is counted.
[[nodiscard]] Result<void> recountSectors(Database& database);

}  // namespace quillon
