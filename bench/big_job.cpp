// SPDX-License-Identifier: MIT
// Writes the evidence of a job over many files that never were: a hundred to a folder, a hundred folders to a branch,
// with heads. The same for the same arguments.
//
// Usage: quillon_bench_big_job EVIDENCE.sqlite ROWS [CHANGED]
// CHANGED: of so many files, spread over all, each third is missing, has another name, or is good (0).

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <fmt/format.h>

#include "evidence/evidence_store.h"
#include "evidence/job_keys.h"

namespace {

using namespace quillon;

constexpr std::int64_t kFilesInFolder = 100;
constexpr std::array<const char*, 12> kExtensions = {"jpg", "png",  "pdf", "docx", "xlsx", "mp4",
                                                     "zip", "html", "txt", "mp3",  "dll",  "psd"};

// As random as it has to be, and the same everywhere.
std::uint64_t mixed(std::uint64_t number) {
    number += 0x9E3779B97F4A7C15U;
    number = (number ^ (number >> 30U)) * 0xBF58476D1CE4E5B9U;
    number = (number ^ (number >> 27U)) * 0x94D049BB133111EBU;
    return number ^ (number >> 31U);
}

Grade gradeOf(std::uint64_t chance) {
    const auto percent = chance % 100;
    return percent < 70   ? Grade::Good
           : percent < 80 ? Grade::Corrupt
           : percent < 95 ? Grade::Unknown
                          : Grade::ZeroBytes;
}

EvidenceRow rowOf(std::int64_t number) {
    const std::uint64_t chance = mixed(static_cast<std::uint64_t>(number));
    const std::int64_t folder = number / kFilesInFolder;
    EvidenceRow row;
    row.row = number + 1;
    row.folder = fmt::format("branch {:05}/folder {:02}", folder / 100, folder % 100);
    row.extension = kExtensions[chance % kExtensions.size()];
    row.name = fmt::format("file {:08}.{}", number, row.extension);
    row.grade = gradeOf(chance >> 16U);
    row.size = row.grade == Grade::ZeroBytes ? 0 : static_cast<std::int64_t>(512 + chance % 4'000'000);
    row.modified = 1'700'000'000'000'000'000 + number;
    if (row.grade == Grade::Corrupt)
        row.reason = Reason::Noise;
    return row;
}

FileHead headOf(const EvidenceRow& row) {
    FileHead head;
    head.length = kHeaderBytes;
    std::uint64_t state = mixed(static_cast<std::uint64_t>(row.size));
    for (std::size_t i = 0; i < kHeaderBytes; ++i) {
        state = i % 8 == 0 ? mixed(state) : state >> 8U;
        head.bytes[i] = i < 8    ? row.extension[i % row.extension.size()]
                        : i < 96 ? static_cast<char>(state & 0xFFU)
                                 : '\0';
    }
    return head;
}

Result<void> write(EvidenceStore& store, std::int64_t rows, std::int64_t changed) {
    const std::int64_t step = changed > 0 ? std::max<std::int64_t>(rows / changed, 1) : 0;
    for (std::int64_t number = 0; number < rows; ++number) {
        EvidenceRow row = rowOf(number);
        if (step > 0 && number % step == 0) {
            const auto kind = number / step % 3;
            if (kind == 0)
                continue;
            if (kind == 1)
                row.name.insert(row.name.find('.'), " moved");  // a walk would meet it at the same place
            else
                row.grade = Grade::Good;
        }
        const FileHead head = headOf(row);
        if (auto added = store.add(row, row.size > 0 ? &head : nullptr); !added)
            return added;
    }
    return store.setJob(job_keys::kSource, "/recovered").and_then([&] { return store.finish(); });
}

}  // namespace

int main(int count, char** arguments) {
    if (count < 3) {
        std::fputs("usage: quillon_bench_big_job EVIDENCE.sqlite ROWS [CHANGED]\n", stderr);
        return 2;
    }
    const NativePath path(arguments[1]);
    const auto rows = std::strtoll(arguments[2], nullptr, 10);
    const auto changed = count > 3 ? std::strtoll(arguments[3], nullptr, 10) : 0;
    const auto written = EvidenceStore::create(path)
                             .and_then([&] { return EvidenceStore::open(path); })
                             .and_then([&](EvidenceStore store) { return write(store, rows, changed); });
    if (!written)
        std::fprintf(stderr, "%s\n", written.error().text.c_str());
    return written ? 0 : 1;
}
