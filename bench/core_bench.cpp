// SPDX-License-Identifier: MIT
// The inner steps of a job, one by one: grading a header, reading a list, matching a path with a skip list.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "app/file_list.h"
#include "platform/sha256.h"
#include "platform/whole_file.h"
#include "testing/header_term.h"
#include "testing/second_opinion/second_opinion.h"
#include "testing/sector_look.h"
#include "testing/skip_list.h"
#include "text/wildcard.h"

namespace {

using namespace quillon;

HeaderBytes someHeader() {
    HeaderBytes head;
    for (std::size_t i = 0; i < head.size(); ++i) head[i] = static_cast<char>(i * 7919 % 251);
    return head;
}

// A term file of this many records of which none matches: half of them anywhere, half at a position.
void gradeHeader(benchmark::State& state) {
    std::vector<CompiledTerm> terms;
    for (std::int64_t i = 0; i < state.range(0); ++i) {
        const std::string place = i % 2 == 0 ? "0" : std::to_string(i % 500 + 1);
        terms.push_back(CompiledTerm::fromTermFileLine(place + ",never " + std::to_string(i) + ",T"));
    }
    const HeaderBytes raw = someHeader();
    for (auto step : state) {
        HeaderBytes head = raw;
        foldHeader(head);
        int hits = 0;
        for (const auto& term : terms) hits += term.match(head) == MatchResult::Yes ? 1 : 0;
        benchmark::DoNotOptimize(hits);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(gradeHeader)->Arg(1)->Arg(8)->Arg(64);

void compileTerm(benchmark::State& state) {
    for (auto step : state) benchmark::DoNotOptimize(CompiledTerm::fromTermFileLine("1,FFD8FFE000104A46,H"));
}
BENCHMARK(compileTerm);

// Reads a list of a hundred thousand rows, splitting each.
void readList(benchmark::State& state) {
    const std::filesystem::path path = std::filesystem::temp_directory_path() / (temporaryName() + ".csv");
    constexpr int rows = 100000;
    ListRow row(u"/recovered/disk one/Documents and Settings/user/Pictures/picture.jpg,15/11/2026, 123456, 32;Ab9x");
    auto writer = ListWriter::create(path);
    for (int i = 0; i < rows; ++i) {
        if (!writer || !writer->write(row)) {
            state.SkipWithError("the list cannot be written");
            return;
        }
    }
    for (auto step : state) {
        auto reader = ListReader::open(path);
        std::size_t columns = 0;
        while (reader->next(row)) columns += row.columns();
        benchmark::DoNotOptimize(columns);
    }
    state.SetItemsProcessed(state.iterations() * rows);
    std::remove(path.c_str());
}
BENCHMARK(readList)->Unit(benchmark::kMillisecond);

void matchWildcard(benchmark::State& state) {
    const auto pattern = WildcardPattern::compile(u"*cache*[0-9]?.tmp*");
    const std::u16string path = u"/recovered/disk one/documents and settings/user/local settings/cache/file12.tmq";
    for (auto step : state) benchmark::DoNotOptimize(pattern->matches(path));
}
BENCHMARK(matchWildcard);

// A pattern that makes a careless matcher try every way of cutting the text.
void matchWorstWildcard(benchmark::State& state) {
    const auto pattern = WildcardPattern::compile(u"*a*a*a*a*a*a*a*b");
    const std::u16string path(static_cast<std::size_t>(state.range(0)), u'a');
    for (auto step : state) benchmark::DoNotOptimize(pattern->matches(path));
}
BENCHMARK(matchWorstWildcard)->Arg(64)->Arg(512);

void skipPath(benchmark::State& state) {
    std::vector<std::u16string> lines;
    for (std::int64_t i = 0; i < state.range(0); ++i) {
        std::u16string line = u"term";
        for (const char c : std::to_string(i)) line.push_back(static_cast<char16_t>(c));
        lines.push_back(line + u".tmp");
    }
    SkipList list;
    list.assign(lines);
    const std::u16string path = u"/recovered/disk one/documents and settings/user/local settings/temp/file.dat";
    for (auto step : state) benchmark::DoNotOptimize(list.matches(path));
}
BENCHMARK(skipPath)->Arg(1)->Arg(20)->Arg(200);

// The first bytes of every file below the folder that QUILLON_SAMPLES names; a few made ones without it.
std::vector<std::string> sampleHeads() {
    const char* const folder = std::getenv("QUILLON_SAMPLES");
    if (folder == nullptr)
        return {std::string("RIFF\x24\xA0\x0F\0WAVE", 12), "%PDF-1.7\n", std::string(kHeaderBytes, '\0')};
    std::vector<std::string> heads;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (!entry.is_regular_file())
            continue;
        std::ifstream file(entry.path(), std::ios::binary);
        std::string head(kHeaderBytes, '\0');
        file.read(head.data(), static_cast<std::streamsize>(head.size()));
        head.resize(static_cast<std::size_t>(file.gcount()));
        heads.push_back(std::move(head));
    }
    return heads;
}

// One file a step: its head lies in memory, its size makes no doubt.
void secondOpinions(benchmark::State& state) {
    const auto heads = sampleHeads();
    std::size_t next = 0;
    for (auto step : state) {
        benchmark::DoNotOptimize(secondOpinion(heads[next], std::uint64_t{1} << 40U));
        next = next + 1 < heads.size() ? next + 1 : 0;
    }
}
BENCHMARK(secondOpinions);

// A mebibyte of noise on its way into a copy: hashed alone (0), looked at for bad sectors alone (1), both (2).
void hashAndLook(benchmark::State& state) {
    std::string bytes(1U << 20U, '\0');
    std::uint32_t noise = 1;
    for (char& byte : bytes) {
        noise = noise * 1664525U + 1013904223U;
        byte = static_cast<char>(noise >> 24U);
    }
    const SectorMarkers markers = SectorMarkers::published();
    SectorLook look(markers);
    Sha256 hash;
    for (auto step : state) {
        if (state.range(0) != 1)
            hash.add(bytes);
        if (state.range(0) != 0)
            look.add(bytes);
    }
    benchmark::DoNotOptimize(look.take());
    benchmark::DoNotOptimize(hash.finish());
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
}
BENCHMARK(hashAndLook)->Arg(0)->Arg(1)->Arg(2);

}  // namespace
