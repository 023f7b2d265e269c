// SPDX-License-Identifier: MIT
// A size in eight bytes, the low one first, and the head of a file: a doubt cites what the head and the size bear out,
// and asked again with the bytes that it wants, the opinion comes to rest.
#include <algorithm>

#include "input.h"
#include "testing/second_opinion/second_opinion.h"

namespace {

using namespace quillon;

constexpr std::size_t kSizeBytes = 8;

void requireTruth(const Doubt& doubt, std::uint64_t size) {
    fuzz::require(!doubt.sentence.empty() && doubt.sentence.back() == '.', "a doubt is told by a sentence");
    switch (doubt.kind) {
        case DoubtKind::Cut:
            fuzz::require(doubt.needed > size, "a cut file has fewer bytes than it needs");
            break;
        case DoubtKind::Longer:
            fuzz::require(doubt.needed < size, "a longer file has more bytes than it needs");
            break;
        default:
            fuzz::require(doubt.needed == 0, "other doubts ask for no bytes");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t count) {
    const std::string bytes = fuzz::bytesOf(data, count);
    if (bytes.size() < kSizeBytes)
        return 0;
    auto size = std::min(*Bytes(bytes).le64(0), kLargestSize);
    const auto head = bytes.substr(kSizeBytes);

    auto doubt = secondOpinion(head, size);
    fuzz::require(!doubt || !secondOpinionFormat(head).empty(), "what is doubted has a format");
    constexpr int steps = 4;
    for (int i = 0; doubt && doubt->kind == DoubtKind::Cut && i < steps; ++i) {
        requireTruth(*doubt, size);
        size = doubt->needed;
        doubt = secondOpinion(head, size);
    }
    if (doubt)
        requireTruth(*doubt, size);
    fuzz::require(!doubt || doubt->kind != DoubtKind::Cut, "a cut is healed by the bytes that it asks for");
    return 0;
}
