// SPDX-License-Identifier: MIT
#include "sectors/sector_scan.h"

#include <filesystem>
#include <map>

#include "evidence/evidence_fixture.h"
#include "evidence/job_keys.h"

namespace quillon {
namespace {

using test::rowOf;

// Files stand on the disk where a test says.
class OrderedPlaces final : public PlaceReader {
public:
    Result<FileSystemPlace> systemOf(const NativePath&) override { return FileSystemPlace{}; }
    Result<FilePlaces> placesOf(std::string_view) override { return FilePlaces{}; }
    std::optional<std::uint64_t> firstPlaceOf(std::string_view nativePath) override {
        const auto found = places.find(nativePath.substr(nativePath.rfind('/') + 1));
        return found == places.end() ? std::nullopt : std::optional(found->second);
    }

    std::map<std::string, std::uint64_t, std::less<>> places;
};

// Stops after so many pieces.
class CountingHost final : public ScanHost {
public:
    bool goOn(const ScanCounts& counts) override {
        EXPECT_LE(counts.bytesDone, counts.bytes);
        EXPECT_GE(counts.bytesDone, done_);
        done_ = counts.bytesDone;
        return pieces-- > 0;
    }
    void notOpened(const FileError& why) override { refused.push_back(why.text); }

    int pieces = 1000;
    std::vector<std::string> refused;

private:
    std::uint64_t done_ = 0;
};

class SectorScanTest : public test::EvidenceFixture {
protected:
    void SetUp() override {
        markers.assign({"1,BAD SECTOR,T,O,words"});
        auto store = created();
        ASSERT_TRUE(store.setJob(job_keys::kSource, (folder / "source").native()));
        add(store, "whole.dat", std::string(5000, 'x'));
        add(store, "sub/hurt.dat",
            std::string(512, 'x') + sector("BAD SECTOR") + std::string(2'000'384, '\0') + "BAD SEC");
        add(store, "zeros.dat", std::string(4096, '\0'));
        ASSERT_TRUE(store.commit());
    }
    void add(EvidenceStore& store, const std::string& file, const std::string& bytes) {
        folder.write("source/" + file, bytes);
        const auto slash = file.rfind('/');
        EvidenceRow row =
            slash == file.npos ? rowOf(1, "", file) : rowOf(1, file.substr(0, slash), file.substr(slash + 1));
        row.size = static_cast<std::int64_t>(bytes.size());
        ASSERT_TRUE(store.add(row, nullptr));
    }
    static std::string sector(const std::string& beginning) {
        return beginning + std::string(512 - beginning.size(), '.');
    }
    ScanCounts scan() {
        const auto counts = scanSectors(path, markers, places, host);
        EXPECT_TRUE(counts) << counts.error().text;
        return counts.value_or(ScanCounts{});
    }
    std::map<std::string, std::optional<std::int64_t>> known() {
        std::map<std::string, std::optional<std::int64_t>> found;
        for (const auto& row : rows()) found[row.path()] = row.badBytes;
        return found;
    }

    SectorMarkers markers;
    OrderedPlaces places;
    CountingHost host;
};

using Known = std::map<std::string, std::optional<std::int64_t>>;

TEST_F(SectorScanTest, EveryFileIsReadToItsEnd) {
    const auto counts = scan();
    EXPECT_EQ(counts.files, 3);
    EXPECT_EQ(counts.hurt, 1);
    EXPECT_EQ(counts.unread, 519U) << "a sector, and what the end of the file left of another one";
    EXPECT_EQ(counts.zeros, 4096U + 2'000'384U);
    EXPECT_EQ(counts.bytesDone, counts.bytes);
    EXPECT_EQ(known(), (Known{{"whole.dat", 0}, {"sub/hurt.dat", 519}, {"zeros.dat", 0}}));
}

TEST_F(SectorScanTest, AScanThatWasStoppedIsGoneOnWith) {
    places.places = {{"zeros.dat", 10}, {"hurt.dat", 20}};
    host.pieces = 5;  // three files are gathered, the first is read, the second begun
    auto counts = scan();
    EXPECT_TRUE(counts.stopped);
    EXPECT_EQ(known(), (Known{{"whole.dat", {}}, {"sub/hurt.dat", {}}, {"zeros.dat", 0}})) << "in the order of places";
    host = CountingHost();
    counts = scan();
    EXPECT_FALSE(counts.stopped);
    EXPECT_EQ(counts.earlier, 1);
    EXPECT_EQ(counts.hurt, 1);
    EXPECT_EQ(known().at("sub/hurt.dat"), 519);
    host = CountingHost();
    EXPECT_EQ(scan().earlier, 0) << "a scan that came to its end is begun anew";
}

TEST_F(SectorScanTest, AFileThatCannotBeOpenedStaysUnknown) {
    std::filesystem::remove(folder / "source/whole.dat");
    const auto counts = scan();
    EXPECT_EQ(counts.failed, 1);
    ASSERT_EQ(host.refused.size(), 1U);
    EXPECT_NE(host.refused[0].find("whole.dat"), std::string::npos);
    EXPECT_EQ(known(), (Known{{"whole.dat", {}}, {"sub/hurt.dat", 519}, {"zeros.dat", 0}}));
}

}  // namespace
}  // namespace quillon
