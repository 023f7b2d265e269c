// SPDX-License-Identifier: MIT
// Makes a tree of files whose kinds, sizes, names and depths look like a recovered user disk. The same count gives the
// same tree. Files keep their full size but hold only their first 4 KiB; the rest is a hole, so that a large tree needs
// little disk.
//
// Usage: quillon_bench_make_tree FOLDER COUNT
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace std::string_view_literals;

struct Kind {
    std::string_view extension;
    std::string_view head;
    int share;           // files of this kind in a thousand
    double typicalSize;  // median size in bytes
};

// Shares sum to 1000. An empty head stands for text and for kinds that nobody knows.
constexpr std::array kKinds = {
    Kind{"jpg", "\xFF\xD8\xFF\xE0\x00\x10JFIF\x00\x01"sv, 270, 180000},
    Kind{"png", "\x89PNG\r\n\x1A\n\x00\x00\x00\rIHDR"sv, 95, 9000},
    Kind{"gif", "GIF89a"sv, 60, 2500},
    Kind{"pdf", "%PDF-1.4\n"sv, 60, 90000},
    Kind{"doc", "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"sv, 45, 40000},
    Kind{"xls", "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"sv, 30, 35000},
    Kind{"docx", "PK\x03\x04\x14\x00\x06\x00"sv, 35, 30000},
    Kind{"xlsx", "PK\x03\x04\x14\x00\x06\x00"sv, 20, 20000},
    Kind{"mp3", "ID3\x03\x00\x00\x00\x00"sv, 55, 4000000},
    Kind{"wav", "RIFF\x24\x10\x00\x00WAVEfmt "sv, 10, 300000},
    Kind{"avi",
         "RIFF\xF8\x0F\x00\x00"
         "AVI LIST"sv,
         8, 20000000},
    Kind{"mp4",
         "\x00\x00\x00\x18"
         "ftypmp42"sv,
         12, 15000000},
    Kind{"zip", "PK\x03\x04\x14\x00\x00\x00"sv, 20, 200000},
    Kind{"html", "<!DOCTYPE html>\n<html>"sv, 55, 6000},
    Kind{"xml", "<?xml version=\"1.0\""sv, 35, 3000},
    Kind{"txt", ""sv, 40, 2500},
    Kind{"exe", "MZ\x90\x00\x03\x00\x00\x00"sv, 25, 120000},
    Kind{"dll", "MZ\x90\x00\x03\x00\x00\x00"sv, 45, 100000},
    Kind{"db", "SQLite format 3\x00"sv, 10, 60000},
    Kind{"tmp", ""sv, 30, 4000},
    Kind{"log", ""sv, 20, 5000},
    Kind{"", ""sv, 20, 3000},
};

// A small generator with a fixed sequence: the standard's distributions may differ from library to library.
class Random {
public:
    std::uint64_t next() {
        state_ += 0x9E3779B97F4A7C15U;
        std::uint64_t z = state_;
        z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9U;
        z = (z ^ (z >> 27U)) * 0x94D049BB133111EBU;
        return z ^ (z >> 31U);
    }
    int below(int limit) { return static_cast<int>(next() % static_cast<std::uint64_t>(limit)); }
    double unit() { return static_cast<double>(next() >> 11U) * 0x1.0p-53; }
    // Roughly normal, by the sum of twelve.
    double normal() {
        double sum = -6;
        for (int i = 0; i < 12; ++i) {
            sum += unit();
        }
        return sum;
    }

private:
    std::uint64_t state_ = 20260101;
};

[[noreturn]] void giveUp(const std::string& what) {
    std::fprintf(stderr, "%s: %s\n", what.c_str(), std::strerror(errno));
    std::exit(1);
}

const Kind& pickKind(Random& random) {
    int left = random.below(1000);
    for (const Kind& kind : kKinds) {
        left -= kind.share;
        if (left < 0) {
            return kind;
        }
    }
    return kKinds.back();
}

// About 1 in 50 files is empty and 1 in 20 is below the 512 bytes that a test needs.
std::uint64_t pickSize(const Kind& kind, Random& random) {
    const int draw = random.below(1000);
    if (draw < 20) {
        return 0;
    }
    if (draw < 70) {
        return 1 + random.next() % 511;
    }
    const double size = kind.typicalSize * std::exp(random.normal() * 1.2);
    return size < 512 ? 512 : static_cast<std::uint64_t>(size);
}

// What stands in the file's first bytes: 1 in 12 lost its own head to zeros or to another file.
std::string pickHead(const Kind& kind, std::uint64_t size, Random& random) {
    constexpr std::size_t kStored = 4096;
    std::string bytes(size < kStored ? static_cast<std::size_t>(size) : kStored, '\0');
    const int damage = random.below(24);
    const std::string_view head = damage == 0 ? ""sv : damage == 1 ? pickKind(random).head : kind.head;
    for (std::size_t at = head.size(); at < bytes.size() && damage != 0; at += 8) {
        const std::uint64_t noise = random.next();
        std::memcpy(&bytes[at], &noise, bytes.size() - at < 8 ? bytes.size() - at : 8);
    }
    std::memcpy(bytes.data(), head.data(), head.size() < bytes.size() ? head.size() : bytes.size());
    return bytes;
}

std::string pickName(const Kind& kind, int number, Random& random) {
    constexpr std::array stems = {"IMG_", "DSC",        "Document ", "Report, part ", "scan-",
                                  "f",    "Übersicht ", "data_",     "track ",        "FILE"};
    std::string name = stems[static_cast<std::size_t>(random.below(stems.size()))] + std::to_string(number);
    if (!kind.extension.empty()) {
        name += '.';
        name += kind.extension;
    }
    return name;
}

// Folders nest up to six deep; a new one lies in any earlier one, so that some hold many and most hold few.
std::vector<std::string> makeFolders(const std::string& root, int count, Random& random) {
    if (mkdir(root.c_str(), 0777) != 0) {
        giveUp(root);
    }
    std::vector<std::string> folders{root};
    std::vector<int> depths{0};
    while (folders.size() < static_cast<std::size_t>(count)) {
        const auto parent = static_cast<std::size_t>(random.below(static_cast<int>(folders.size())));
        if (depths[parent] == 6) {
            continue;
        }
        const std::string folder = folders[parent] + "/folder " + std::to_string(folders.size());
        if (mkdir(folder.c_str(), 0777) != 0) {
            giveUp(folder);
        }
        folders.push_back(folder);
        depths.push_back(depths[parent] + 1);
    }
    return folders;
}

void makeFile(const std::string& path, const Kind& kind, Random& random) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (file < 0) {
        giveUp(path);
    }
    const std::uint64_t size = pickSize(kind, random);
    const std::string bytes = pickHead(kind, size, random);
    if (write(file, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()) ||
        ftruncate(file, static_cast<off_t>(size)) != 0) {
        giveUp(path);
    }
    // Some spread of dates over ten years.
    const timespec time{1500000000 + random.below(315000000), 0};
    const std::array<timespec, 2> times{time, time};
    if (futimens(file, times.data()) != 0 || close(file) != 0) {
        giveUp(path);
    }
}

}  // namespace

int main(int argumentCount, char* arguments[]) {
    const int count = argumentCount == 3 ? std::atoi(arguments[2]) : 0;
    if (count <= 0) {
        std::fprintf(stderr, "Usage: %s FOLDER COUNT\n", arguments[0]);
        return 2;
    }
    Random random;
    const std::vector<std::string> folders = makeFolders(arguments[1], 1 + count / 40, random);
    for (int number = 0; number < count; ++number) {
        const Kind& kind = pickKind(random);
        const std::string& folder = folders[static_cast<std::size_t>(random.below(static_cast<int>(folders.size())))];
        makeFile(folder + '/' + pickName(kind, number, random), kind, random);
    }
    return 0;
}
