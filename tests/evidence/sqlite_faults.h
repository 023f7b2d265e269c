// SPDX-License-Identifier: MIT
#pragma once

// A disk under SQLite that fails on demand.

#include <cerrno>

namespace quillon::test {

/// While it lives, the n-th write of SQLite and all behind it fail, counted from 1; 0 lets all of them through.
class SqliteFaults {
public:
    explicit SqliteFaults(int failAt, int number = ENOSPC);
    ~SqliteFaults();
    SqliteFaults(const SqliteFaults&) = delete;
    SqliteFaults& operator=(const SqliteFaults&) = delete;

    /// Whether a write failed.
    [[nodiscard]] bool met() const;
};

/// While it lives, SQLite may open nothing for writing.
class SqliteReadsOnly {
public:
    SqliteReadsOnly();
    ~SqliteReadsOnly();
    SqliteReadsOnly(const SqliteReadsOnly&) = delete;
    SqliteReadsOnly& operator=(const SqliteReadsOnly&) = delete;
};

}  // namespace quillon::test
