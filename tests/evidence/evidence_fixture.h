// SPDX-License-Identifier: MIT
#pragma once

// Evidence files in a temporary folder, filled through the store.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "evidence/evidence_reader.h"
#include "evidence/evidence_store.h"
#include "support/temp_folder.h"

namespace quillon::test {

/// A head that no other number has.
inline FileHead headOf(int number, std::uint16_t length = 512) {
    FileHead head;
    head.length = length;
    head.bytes.fill(' ');
    auto state = static_cast<std::uint32_t>(number) * 2654435761U + 1;
    for (std::size_t i = 0; i < length; ++i) {
        state = state * 1664525U + 1013904223U;
        head.bytes[i] = static_cast<char>(state >> 24U);
    }
    return head;
}

/// A tested file; the number tells all about it.
inline EvidenceRow rowOf(int number, const std::string& folder, const std::string& name, Grade grade = Grade::Good) {
    EvidenceRow row;
    row.row = number;
    row.folder = folder;
    row.name = name;
    row.extension = "jpg";
    row.size = 1000 + number;
    row.modified = 1'794'744'000'000'000'000 + number;
    row.attributes = 32;
    row.grade = grade;
    return row;
}

class EvidenceFixture : public testing::Test {
protected:
    EvidenceFixture() : path(folder / "1234.sqlite") {}

    EvidenceStore created(EvidenceStore::Heads heads = EvidenceStore::Heads::Kept) const {
        const auto made = EvidenceStore::create(path);
        EXPECT_TRUE(made) << made.error().text;
        return opened(heads);
    }
    EvidenceStore opened(EvidenceStore::Heads heads = EvidenceStore::Heads::Kept) const {
        auto store = EvidenceStore::open(path, heads);
        EXPECT_TRUE(store) << store.error().text;
        return std::move(*store);
    }
    EvidenceReader reader() const {
        auto made = EvidenceReader::open(path);
        EXPECT_TRUE(made) << made.error().text;
        return std::move(*made);
    }
    /// Every row, in the order of the ids.
    std::vector<EvidenceRow> rows() const {
        auto from = reader();
        std::vector<EvidenceRow> all;
        EvidenceRow row;
        while (true) {
            const auto more = from.next(row);
            EXPECT_TRUE(more) << more.error().text;
            if (!more || !*more)
                return all;
            all.push_back(row);
        }
    }
    /// What a person would paste into the shell of SQLite; each row with "|" between its columns.
    static std::vector<std::string> answers(const NativePath& file, const std::string& sql);

    /// Adds as many files as heads, all in one folder.
    static void fill(EvidenceStore& store, int files) {
        for (int i = 1; i <= files; ++i) {
            EvidenceRow row = rowOf(i, "pic", "IMG_" + std::to_string(i) + ".jpg");
            const FileHead head = headOf(i);
            ASSERT_TRUE(store.add(row, &head));
        }
        ASSERT_TRUE(store.finish());
    }

    TempFolder folder;
    const NativePath path;
};

}  // namespace quillon::test
