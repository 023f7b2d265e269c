// SPDX-License-Identifier: MIT
#include "evidence/evidence_fixture.h"

#include <sqlite3.h>

namespace quillon::test {

std::vector<std::string> EvidenceFixture::answers(const NativePath& file, const std::string& sql) {
    std::vector<std::string> rows;
    sqlite3* database = nullptr;
    EXPECT_EQ(sqlite3_open_v2(file.c_str(), &database, SQLITE_OPEN_READONLY, nullptr), SQLITE_OK);
    const auto add = [](void* to, int columns, char** values, char** /*names*/) {
        std::string row;
        for (int i = 0; i < columns; ++i)
            row += (i > 0 ? "|" : "") + std::string(values[i] != nullptr ? values[i] : "");
        static_cast<std::vector<std::string>*>(to)->push_back(row);
        return 0;
    };
    char* error = nullptr;
    EXPECT_EQ(sqlite3_exec(database, sql.c_str(), add, &rows, &error), SQLITE_OK) << (error != nullptr ? error : "");
    sqlite3_free(error);
    sqlite3_close(database);
    return rows;
}

}  // namespace quillon::test
