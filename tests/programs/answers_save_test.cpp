// SPDX-License-Identifier: MIT
// Every file that answers about jobs are written to, on a disk of which every call fails once.
#include <sstream>

#include "answers/job_export.h"
#include "evidence/evidence_store.h"
#include "evidence/job_keys.h"
#include "evidence/name_text.h"
#include "programs/list_sectors.h"
#include "programs/save_table.h"
#include "support/list_bytes.h"

namespace quillon {
namespace {

using test::Bytes;
using test::Place;
using test::SaveTable;
using test::TempFolder;

TEST_F(SaveTable, Exports) {
    const auto rows = test::utf16Bytes(
        u"/s/a.abc,15/11/2026, 600, 32;Ab9x,Header OK\r\n/s/b.abc,15/11/2026, 700, 32;Ab9x,Header Corrupt\r\n");
    for (const char* format : {"csv", "jsonl", "xlsx"}) {
        const std::string target = std::string("out/files.") + format;
        for (const bool overOld : {false, true}) {
            if (overOld && target.ends_with("xlsx"))
                continue;  // what stood there was no workbook, and is compared as one
            disturb(
                {.name = target + (overOld ? " over an old one" : ""),
                 .before = overOld ? Bytes{{"local/7.csv", rows}, {target, "before"}} : Bytes{{"local/7.csv", rows}},
                 .run = [format, target](Place& place) {
                     const JobFiles job{"7", place.root / "local/7.csv", {}};
                     ExportForm form;
                     form.format = format;
                     return writeExport({job}, {}, form, place.root / target).has_value();
                 }});
        }
    }
}

// One file, all of whose bytes the map calls unread.
class OnePlace final : public PlaceReader {
public:
    Result<FileSystemPlace> systemOf(const NativePath& /*source*/) override {
        return FileSystemPlace{42, "ext4", "rw", 4096, {{"/dev/sdx", 0x100000, 0}}};
    }
    Result<FilePlaces> placesOf(std::string_view /*nativePath*/) override {
        return FilePlaces{8192, 42, {{0, 0x1000, 0x2000}}};
    }
    std::optional<std::uint64_t> firstPlaceOf(std::string_view /*nativePath*/) override { return std::nullopt; }
};

TEST_F(SaveTable, MapOfWhatIsStillMissing) {
    const TempFolder apart;  // what the evidence learns is no part of the table
    const NativePath evidence = apart / "7.sqlite";
    const auto makeEvidence = [&evidence] {
        EvidenceRow row;
        row.name = "a.abc";
        row.size = 8192;
        return EvidenceStore::create(evidence)
            .and_then([&] { return EvidenceStore::open(evidence); })
            .and_then([&](EvidenceStore store) {
                return store.setJob(job_keys::kSource, nameText("/s"))
                    .and_then([&] { return store.add(row, nullptr); })
                    .and_then([&] { return store.finish(); });
            });
    };
    ASSERT_TRUE(makeEvidence());
    for (const bool overOld : {false, true}) {
        Bytes before{{"app/map", "0 +\n0 0x100000 -\n"}};
        if (overOld)
            before["out/domain.map"] = "before";
        disturb({.name = overOld ? "domain map over an old one" : "domain map",
                 .before = before,
                 .run = [&evidence](Place& place) {
                     std::ostringstream out;
                     ListCommandOptions options;
                     options.map = place.root / "app/map";
                     options.output = place.root / "out/domain.map";
                     OnePlace places;
                     return tellSectors({{"7", {}, evidence}}, options, {out, out}, places).has_value();
                 }});
    }
}

}  // namespace
}  // namespace quillon
