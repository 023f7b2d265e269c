// SPDX-License-Identifier: MIT
#pragma once

// Rows in memory that a statement reads like those of a table. One statement that inserts many of them takes half of
// the work of one statement for each, which has to be bound, begun and ended. For the sources of this folder only.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "evidence/database.h"

struct sqlite3_context;

namespace quillon {

/// Takes the value of one column of one row; what is not given is NULL. Texts and blobs are not copied: they stay until
/// the statement has come to its end.
class OfferedValue {
public:
    explicit OfferedValue(sqlite3_context& context) : context_(context) {}

    void give(std::int64_t number);
    void give(std::string_view text);
    void give(Blob blob);
    template <typename Value>
    void give(const std::optional<Value>& value) {
        if (value)
            give(*value);
    }

private:
    sqlite3_context& context_;
};

class OfferedRows {
public:
    OfferedRows() = default;
    virtual ~OfferedRows() = default;
    OfferedRows(const OfferedRows&) = delete;
    OfferedRows& operator=(const OfferedRows&) = delete;

    [[nodiscard]] virtual std::size_t count() const = 0;
    /// Gives a column of a row, both from 0.
    virtual void give(std::size_t row, int column, OfferedValue& value) const = 0;
};

/// Offers `rows` as the table `offered`, whose columns are named `columns` with commas between. They must outlive the
/// database, which has no other rows on offer. No schema can name this table, and none of another program sees it.
[[nodiscard]] Result<void> offer(Database& database, const OfferedRows& rows, const char* columns);

}  // namespace quillon
