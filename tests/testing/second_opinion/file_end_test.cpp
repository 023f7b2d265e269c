// SPDX-License-Identifier: MIT
#include "testing/second_opinion/file_end.h"

#include <random>

#include "testing/second_opinion/made_head.h"

namespace quillon::test {

namespace {

using namespace std::string_literals;

// A whole file in memory that counts what is read of it.
class MemoryEnd final : public EndReader {
public:
    explicit MemoryEnd(std::string_view file) : file_(file) {}

    Result<std::string> read(std::uint64_t at, std::uint64_t count) override {
        EXPECT_LE(at + count, file_.size());
        ++reads;
        bytes += count;
        if (fails)
            return failure(ErrorKind::PathAccess, "unreadable");
        return std::string(file_.substr(at, count));
    }

    int reads = 0;
    std::uint64_t bytes = 0;
    bool fails = false;

private:
    std::string_view file_;
};

Opinion endOf(std::string_view file) {
    MemoryEnd reader(file);
    const auto opinion = fileEndOpinion(file.substr(0, kHeaderBytes), file.size(), reader);
    EXPECT_TRUE(opinion);
    EXPECT_LE(reader.reads, kBoxReads);
    EXPECT_LE(reader.bytes, kShortEnd + kLongEnd);
    return opinion ? *opinion : Opinion();
}

// Bytes of coded pixels: no FF without a zero behind it.
std::string coded(std::size_t count, unsigned seed = 1) {
    std::mt19937 chance(seed);
    std::string bytes;
    while (bytes.size() < count) {
        bytes.push_back(static_cast<char>(chance() % 256));
        if (bytes.back() == '\xFF')
            bytes.push_back('\0');
    }
    return bytes;
}

std::string noise(std::size_t count, unsigned seed) {
    std::mt19937 chance(seed);
    std::string bytes(count, '\0');
    for (auto& byte : bytes) byte = static_cast<char>(chance() % 256);
    return bytes;
}

std::string be32(std::size_t value) {
    return MadeHead().be32(0, value).bytes().substr(0, 4);
}

std::string box(std::string_view kind, const std::string& body) {
    return be32(body.size() + 8) + std::string(kind) + body;
}

std::string jpeg(std::size_t pixels) {
    const std::string preview = hexToText("FFD8FFDA0008010100003F00") + coded(900, 2) + hexToText("FFD9");
    const std::string application = hexToText("FFE1") + be32(preview.size() + 2).substr(2) + preview;
    return hexToText("FFD8") + application + hexToText("FFDA0008010100003F00") + coded(pixels) + hexToText("FFD9");
}

std::string zip(const std::string& content) {
    const std::string name = "a.bin";
    const auto member =
        MadeHead().hex(0, "504B0304").le32(18, content.size()).le16(26, 5).bytes().substr(0, 30) + name + content;
    const auto entry = MadeHead().hex(0, "504B0102").le16(28, 5).bytes().substr(0, 46) + name;
    const auto end = MadeHead().hex(0, "504B0506").le16(10, 1).le32(12, entry.size()).le32(16, member.size());
    return member + entry + end.bytes().substr(0, 22);
}

std::string film(std::size_t media) {
    return box("ftyp", "isom" + std::string(12, '\0')) + box("mdat", noise(media, 3)) + box("moov", noise(3000, 4));
}

std::string le64(std::uint64_t value) {
    return MadeHead().le64(0, value).bytes().substr(0, 8);
}

// Its properties stand behind the first 512 bytes, as where tags come first.
std::string packetFilm(std::size_t media) {
    const auto object = [](std::string_view kind, const std::string& body) {
        return hexToText(kind) + le64(body.size() + 24) + body;
    };
    const std::string tags = object("40A4D0D207E3D21197F000A0C95EA850", std::string(2000, 't'));
    const std::string header = le64(30 + tags.size()) + std::string("\1\0\0\0\1\2", 6) + tags;
    return hexToText("3026B2758E66CF11A6D900AA0062CE6C") + header +
           object("3626B2758E66CF11A6D900AA0062CE6C", noise(media, 21)) +
           object("90080033B1E5CF1189F400A0C90349CB", noise(900, 22));
}

struct Whole {
    const char* name;
    std::string file;
    std::size_t trailer = 0;  // bytes behind the last mark, which nobody misses
};

std::vector<Whole> wholeFiles() {
    const std::string png = hexToText("89504E470D0A1A0A") + coded(90000) + "IEND\xAE\x42\x60\x82";
    const std::string text(90000, 'x');
    return {
        {"small photo", jpeg(20000)},
        {"photo", jpeg(150000)},
        {"photo with padding", jpeg(150000) + std::string(4096, '\0'), 4096},
        {"photo with a maker's data", jpeg(150000) + noise(3000, 5), 3000},
        {"png", png},
        {"png with padding", png + std::string(600, '\0'), 600},
        {"gif", "GIF89a" + coded(90000) + "\0;"s, 0},
        {"pdf", "%PDF-1.7\n1 0 obj\nendobj\n%%EOF\n3 0 obj\nendobj\n" + text + "2 0 obj\nendobj\nstartxref\n9\n%%EOF\n",
         1},
        {"zip", zip(noise(90000, 6))},
        {"zip of a zip", zip(noise(100, 7) + zip(noise(90000, 8)) + noise(900, 9))},
        {"film", film(90000)},
        {"film in packets", packetFilm(90000)},
        {"film in packets with padding", packetFilm(90000) + std::string(600, '\0'), 600},
        {"rtf", "{\\rtf1 " + text + "}\r\n", 2},
        {"xml", "<?xml version=\"1.0\"?><a>" + text + "</a>\n", 1},
    };
}

TEST(FileEndTest, WholeFilesHaveNoDoubt) {
    for (const auto& whole : wholeFiles()) {
        EXPECT_TRUE(hasKnownEnd(std::string_view(whole.file).substr(0, 512), whole.file.size())) << whole.name;
        const auto doubt = endOf(whole.file);
        EXPECT_FALSE(doubt) << whole.name << ": " << doubt->sentence;
    }
}

TEST(FileEndTest, CutsAreFound) {
    std::mt19937 chance(10);
    for (const auto& whole : wholeFiles()) {
        int found = 0;
        constexpr int cuts = 60;
        for (int i = 0; i < cuts; ++i) {
            const auto length = 2500 + chance() % (whole.file.size() - whole.trailer - 2500);
            const auto doubt = endOf(std::string_view(whole.file).substr(0, length));
            if (!doubt)
                continue;
            ++found;
            EXPECT_GT(doubt->needed, doubt->kind == DoubtKind::Cut ? length : 0U) << whole.name;
        }
        EXPECT_GE(found, cuts * 95 / 100) << whole.name;
    }
}

TEST(FileEndTest, APhotoWithAFilmBehindItIsWhole) {
    // The film is longer than what is read, and its last box tells nothing of the photo.
    const auto photo = jpeg(20000) + box("ftyp", "mp42") + box("moov", noise(900, 11)) + box("mdat", noise(200000, 12));
    EXPECT_FALSE(endOf(photo));
}

// Named records, a directory of them and a mark at the very end, as makers put theirs behind everything.
std::string recordsBehind() {
    const std::string records = noise(3000, 31) + "SEFH" + noise(44, 32);
    return records + std::string("\x30\0\0\0SEFT", 8);
}

TEST(FileEndTest, WhatCamerasPutBehindAPhotoIsNoDoubt) {
    const std::string clip = box("ftyp", "mp42") + box("moov", noise(900, 33)) + box("mdat", noise(90000, 34));
    const std::pair<const char*, std::string> trailers[] = {
        {"a second photo", jpeg(9000)},
        {"a second photo behind a gap", std::string(3000, '\0') + jpeg(9000)},
        {"a larger second photo", jpeg(120000)},
        {"a photo and its film", jpeg(9000) + clip},
        {"records", recordsBehind()},
        {"a film and records", clip + recordsBehind()},
        {"a whole cluster of zeros", std::string(65536 * 2, '\0')},
        {"erased flash", std::string(5000, '\xFF')},
        {"words", "\r\n<?xpacket begin=''?>" + std::string(2000, ' ') + "<?xpacket end='w'?>"},
        {"a depth map of no known form", noise(150000, 35)},
    };
    for (const auto& [name, trailer] : trailers) {
        EXPECT_FALSE(endOf(jpeg(150000) + trailer)) << name;
        EXPECT_FALSE(endOf(jpeg(2000) + trailer)) << name << " behind a small one";
    }
}

TEST(FileEndTest, WhatCamerasPutBehindAFilmIsNoDoubt) {
    const std::pair<const char*, std::string> trailers[] = {{"room", box("free", std::string(500, '\0'))},
                                                            {"own data", box("uuid", noise(3000, 36))},
                                                            {"records in a box", box("sefd", recordsBehind())},
                                                            {"records without one", recordsBehind()},
                                                            {"places", box("gps ", noise(300, 37))},
                                                            {"an empty box", box("wide", "")},
                                                            {"a cluster of zeros", std::string(4096, '\0')}};
    for (const auto& [name, trailer] : trailers) EXPECT_FALSE(endOf(film(90000) + trailer)) << name;
}

TEST(FileEndTest, ATailOfZerosIsTold) {
    const auto file = jpeg(200000).substr(0, 30000) + std::string(170000, '\0');
    const auto doubt = endOf(hexToText("89504E470D0A1A0A") + file);
    ASSERT_TRUE(doubt);
    EXPECT_EQ(doubt->sentence, "The last chunk (IEND) is missing at the end of the file, which holds zeros instead.");
}

TEST(FileEndTest, AFilmWithoutItsIndexIsTold) {
    const auto doubt = endOf(box("ftyp", "isom") + box("free", std::string(600, 'x')) + box("mdat", noise(5000, 13)));
    ASSERT_TRUE(doubt);
    EXPECT_EQ(doubt->kind, DoubtKind::NoIndex);
}

TEST(FileEndTest, AFilmWithAMakersDataBehindItIsWhole) {
    EXPECT_FALSE(endOf(film(5000) + std::string(64, '\0')));
    EXPECT_FALSE(endOf(film(5000) + noise(64, 14)));
    std::string parts = box("ftyp", "iso5") + box("moov", noise(700, 15));
    for (unsigned i = 0; i < 20; ++i) parts += box("moof", noise(90, i)) + box("mdat", noise(900, i));
    EXPECT_FALSE(endOf(parts)) << "too many boxes are left alone";
}

TEST(FileEndTest, AnEndThatCannotBeReadIsNoDoubt) {
    const auto file = jpeg(5000);
    MemoryEnd reader(file);
    reader.fails = true;
    EXPECT_FALSE(fileEndOpinion(file.substr(0, 512), file.size(), reader));
}

TEST(FileEndTest, OtherFormatsAreNotRead) {
    const std::string file = "just some text";
    MemoryEnd reader(file);
    EXPECT_FALSE(hasKnownEnd(file, file.size()));
    const auto opinion = fileEndOpinion(file, file.size(), reader);
    EXPECT_TRUE(opinion && !*opinion);
    EXPECT_EQ(reader.reads, 0);
}

}  // namespace

}  // namespace quillon::test
