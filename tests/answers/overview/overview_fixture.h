// SPDX-License-Identifier: MIT
#pragma once

// A job of six files in three folders, with evidence and as a list alone.

#include <gtest/gtest.h>

#include "answers/overview/overview_source.h"
#include "app/file_list.h"
#include "evidence/evidence_store.h"
#include "evidence/job_keys.h"
#include "support/temp_folder.h"
#include "text/unicode.h"

namespace quillon::test {

struct OverviewFile {
    const char* folder;
    const char* name;
    const char* extension;
    Grade grade;
    std::int64_t size;
    std::optional<Reason> reason;
};

inline const std::vector<OverviewFile> kOverviewFiles = {
    {"", "a.jpg", "jpg", Grade::Good, 1000, {}},
    {"photos", "b.jpg", "jpg", Grade::Corrupt, 2000, Reason::ZeroFilled},
    {"photos/2019", "c.JPG", "jpg", Grade::Corrupt, 3000, Reason::Noise},
    {"photos/2019", "d.png", "png", Grade::CommonHeader, 4000, Reason::OtherFormat},
    {"photos2", "e", "", Grade::NoExtension, 10, {}},
    {"photos2", "f.xyz", "xyz", Grade::Unknown, 5000, {}},
};

/// `ended` false: the folders have no counts of their own, as after a stop by a power cut.
inline void writeOverviewEvidence(const NativePath& path, bool ended = true) {
    ASSERT_TRUE(EvidenceStore::create(path));
    auto store = EvidenceStore::open(path);
    ASSERT_TRUE(store);
    ASSERT_TRUE(store->setJob(job_keys::kSource, "/source"));
    std::int64_t number = 0;
    for (const auto& file : kOverviewFiles) {
        EvidenceRow row;
        row.row = ++number;
        row.folder = file.folder;
        row.name = file.name;
        row.extension = file.extension;
        row.size = file.size;
        row.grade = file.grade;
        row.reason = file.reason;
        if (number == 1) {
            row.doubt = "cut";
            row.doubtDetail = "12 bytes are missing";
        }
        FileHead head;
        head.length = 512;
        head.bytes.fill(static_cast<char>('0' + number));
        ASSERT_TRUE(store->add(row, &head));
    }
    ASSERT_TRUE(ended ? store->finish() : store->commit());
}

inline void writeOverviewList(const NativePath& path) {
    auto writer = ListWriter::create(path);
    ASSERT_TRUE(writer);
    for (const auto& file : kOverviewFiles) {
        ListRow row;
        const std::string parent = std::string("/source") + (*file.folder != '\0' ? "/" : "") + file.folder;
        row.beginFile(utf8ToUtf16(parent + "/"), file.name);
        row.addFile({u"01/01/2026", static_cast<std::uint64_t>(file.size), 32, u"TOKEN"});
        const std::u16string message = kGrades[file.grade].message.value;
        row.add(file.grade == Grade::CommonHeader ? message + u": Zip" : message);
        ASSERT_TRUE(writer->write(row));
    }
    ASSERT_TRUE(writer->close());
}

}  // namespace quillon::test
