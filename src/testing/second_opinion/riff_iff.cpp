// SPDX-License-Identifier: MIT
// Containers of chunks that tell their own length: RIFF and its larger sisters, IFF, DjVu.
#include "testing/second_opinion/formats.h"

namespace quillon {

namespace {

// Writers that cannot go back put the largest number they have there, or a limit near one of the two ends.
constexpr std::uint64_t kMargin = 0x1000;

constexpr bool isStreamSize(std::uint64_t size) {
    return size == 0 || size >= 0xFFFFFFFFU - kMargin || within(size, 0x7FFFFFFFU - kMargin, 0x80000000U + kMargin);
}

// The same of a length that has 64 bits.
constexpr Number knownLength(Number length) {
    return length && *length != 0 && *length < kLargestSize - kMargin ? length : std::nullopt;
}

// Careless writers count the eight bytes of the header as well, or leave out the last padding byte.
constexpr std::uint64_t kSlack = 9;

constexpr bool isPrintable(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return c >= ' ' && c <= '~'; });
}

// A text may begin with the same four letters; then what stands for the size is text, too.
bool isRiffText(Bytes head) {
    constexpr std::string_view kinds[] = {"WAVE", "AVI ", "WEBP", "ACON", "RMID", "CDDA", "sfbk", "DLS ", "XWMA"};
    return !isPrintable(head.part(8, 4)) ||
           (isPrintable(head.part(4, 4)) && std::ranges::find(kinds, head.part(8, 4)) == std::end(kinds));
}

constexpr std::string_view kFormKinds[] = {
    "AIFF", "AIFC", "ILBM", "PBM ", "ACBM", "RGB8", "RGBN", "YUVN", "DEEP", "ANIM", "8SVX", "16SV", "MAUD", "SMUS",
    "FTXT", "WORD", "DR2D", "CTLG", "LWOB", "LWO2", "LWO3", "LWLO", "LXOB", "TDDD", "REAL", "IFRS", "FAXX", "PICS"};

}  // namespace

// "Multimedia Programming Interface and Data 1.0" (IBM, Microsoft): 0 "RIFF", 4 le32 length of what
// follows, 8 kind; "RIFX" the same with be32. A film beyond the first gigabyte goes on behind the declared end.
Opinion riffOpinion(Bytes head, std::uint64_t size) {
    const auto length = head.has(0, "RIFX") ? head.be32(4) : head.le32(4);
    if (!length || isRiffText(head))
        return {};
    if (*length == 0 && head.has(8, "AVI ") && size > kHeaderBytes)
        return noIndex("The RIFF header was never completed: the film has no index.");
    if (isStreamSize(*length))
        return {};
    const auto slack = head.has(8, "CDDA") ? 0 : kSlack;  // the system makes these up itself
    if (auto cut = needs(plus(length, 8), size, "The RIFF header", slack))
        return cut;
    return head.has(8, "WEBP") ? endsAt(plus(length, 8), size, "The RIFF header", 1) : Opinion();
}

// EBU Tech 3306 and ITU-R BS.2088: 0 "RF64" or "BW64", 4 FFFFFFFF, 12 "ds64", 20 le64 length of what follows.
Opinion rf64Opinion(Bytes head, std::uint64_t size) {
    if (!head.has(12, "ds64"))
        return {};
    return needs(plus(knownLength(head.le64(20)), 8), size, "The ds64 chunk", kSlack);
}

// "EA IFF 85" (Electronic Arts): 0 "FORM", 4 be32 length of what follows, 8 kind.
Opinion iffOpinion(Bytes head, std::uint64_t size) {
    const auto length = head.be32(4);
    if (!length || isStreamSize(*length) || std::ranges::find(kFormKinds, head.part(8, 4)) == std::end(kFormKinds))
        return {};
    return needs(plus(length, 8), size, "The FORM header", kSlack);
}

// "DjVu3" (LizardTech): 0 "AT&T", 4 "FORM", 8 be32 length of what follows.
Opinion djvuOpinion(Bytes head, std::uint64_t size) {
    return needs(plus(head.be32(8), 12), size, "The FORM header", kSlack);
}

// "DSDIFF 1.5" (Philips): 0 "FRM8", 4 be64 length of what follows, 12 "DSD ".
Opinion dsdiffOpinion(Bytes head, std::uint64_t size) {
    return head.has(12, "DSD ") ? needs(plus(knownLength(head.be64(4)), 12), size, "The FRM8 header", kSlack)
                                : Opinion();
}

// "DSF File Format 1.01" (Sony): 0 "DSD ", 4 le64 28, 12 le64 length of the file.
Opinion dsfOpinion(Bytes head, std::uint64_t size) {
    return head.le64(4) == 28U ? needs(knownLength(head.le64(12)), size, "The DSD header") : Opinion();
}

// "Sony Wave64": 0 the identifier of "riff", 16 le64 length of the file with these 24 bytes.
Opinion wave64Opinion(Bytes head, std::uint64_t size) {
    return needs(knownLength(head.le64(16)), size, "The riff header", kSlack);
}

}  // namespace quillon
