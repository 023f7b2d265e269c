// SPDX-License-Identifier: MIT
#include "testing/second_opinion/second_opinion.h"

#include <array>

#include "testing/second_opinion/formats.h"

namespace quillon {

namespace {

using namespace std::string_view_literals;

struct Format {
    std::string_view name;
    std::uint64_t at;  // of the signature
    std::string_view signature;
    Opinion (*judge)(Bytes head, std::uint64_t size);
    bool (*confirms)(Bytes head) = nullptr;  // asked where the signature alone is too short to tell
};

// A new format is a line here, its function in formats.h and its file, and its test. The first signature that stands in
// a head decides, so a longer one comes ahead of a shorter one.
constexpr auto kFormats = std::to_array<Format>({
    {"enhanced metafile", 40, " EMF", enhancedMetafileOpinion},
    {"colour profile", 36, "acsp", colourProfileOpinion},
    {"embedded font", 34, "LP\0\0"sv, embeddedFontOpinion},
    {"DICOM", 128, "DICM", dicomOpinion},
    {"tar", 257, "ustar", tarOpinion},
    {"VDI", 64, "\x7F\x10\xDA\xBE", vdiOpinion},
    {"mobile book", 60, "BOOKMOBI", mobileBookOpinion},
    {"mobile book", 60, "TEXtREAd", mobileBookOpinion},
    {"Access", 4, "Standard Jet DB\0"sv, accessOpinion},
    {"Access", 4, "Standard ACE DB\0"sv, accessOpinion},
    {"Access", 4, "MSISAM Database\0"sv, accessOpinion},
    {"ESE", 4, "\xEF\xCD\xAB\x89", extensibleStorageOpinion},
    {"old event log", 4, "LfLe", oldEventLogOpinion},
    {"ISO media", 4, "ftyp", isoMediaOpinion},
    {"ISO media", 4, "moov", isoMediaOpinion},
    {"ISO media", 4, "mdat", isoMediaOpinion},
    {"ISO media", 4, "wide", isoMediaOpinion},
    {"ISO media", 4, "free", isoMediaOpinion},
    {"ISO media", 4, "skip", isoMediaOpinion},
    {"ISO media", 4, "styp", isoMediaOpinion},
    {"ISO media", 4, "moof", isoMediaOpinion},
    {"ISO media", 4, "sidx", isoMediaOpinion},
    {"ISO media", 4, "pnot", isoMediaOpinion},
    {"ISO media", 4, "jP  ", isoMediaOpinion},
    {"ISO media", 4, "JXL ", isoMediaOpinion},
    {"LHA", 2, "-lh", lhaOpinion},
    {"FLIC", 4, "\x11\xAF", flicOpinion},
    {"FLIC", 4, "\x12\xAF", flicOpinion},
    {"RIFF", 0, "RIFF", riffOpinion},
    {"RIFF", 0, "RIFX", riffOpinion},
    {"RF64", 0, "RF64", rf64Opinion},
    {"RF64", 0, "BW64", rf64Opinion},
    {"IFF", 0, "FORM", iffOpinion},
    {"DjVu", 0, "AT&TFORM", djvuOpinion},
    {"DSDIFF", 0, "FRM8", dsdiffOpinion},
    {"DSF", 0, "DSD ", dsfOpinion},
    {"Wave64", 0, "riff\x2E\x91\xCF\x11\xA5\xD6\x28\xDB\x04\xC1\x00\x00"sv, wave64Opinion},
    {"bitmap", 0, "BM", bitmapOpinion},
    {"icon", 0, "\0\0\1\0"sv, iconOpinion, isIcon},
    {"icon", 0, "\0\0\2\0"sv, iconOpinion, isIcon},
    {"Apple icon", 0, "icns", appleIconOpinion},
    {"Photoshop", 0, "8BPS", photoshopOpinion},
    {"DPX", 0, "SDPX", dpxOpinion},
    {"DPX", 0, "XPDS", dpxOpinion},
    {"Sun raster", 0, "\x59\xA6\x6A\x95", sunRasterOpinion},
    {"PNG", 0, "\x89PNG\r\n\x1A\n", pngOpinion},
    {"MNG, JNG", 0, "\x8AMNG\r\n\x1A\n", animatedPngOpinion},
    {"MNG, JNG", 0, "\x8BJNG\r\n\x1A\n", animatedPngOpinion},
    {"JPEG", 0, "\xFF\xD8\xFF", jpegOpinion},
    {"GIF", 0, "GIF87a", gifOpinion},
    {"GIF", 0, "GIF89a", gifOpinion},
    {"TIFF", 0, "II*\0"sv, tiffOpinion},
    {"TIFF", 0, "MM\0*"sv, tiffOpinion},
    {"TIFF", 0, "II+\0"sv, tiffOpinion},
    {"TIFF", 0, "MM\0+"sv, tiffOpinion},
    {"TIFF", 0, "IIRO", tiffOpinion},
    {"TIFF", 0, "IIRS", tiffOpinion},
    {"TIFF", 0, "MMOR", tiffOpinion},
    {"TIFF", 0, "IIU\0"sv, tiffOpinion},
    {"JPEG XR", 0, "II\xBC\x01", tiffOpinion},
    {"RAF", 0, "FUJIFILMCCD-RAW", fujifilmOpinion},
    {"MRW", 0, "\0MRM"sv, minoltaOpinion},
    {"JPEG 2000", 0, "\xFF\x4F\xFF\x51", codestreamOpinion},
    {"Matroska", 0, "\x1A\x45\xDF\xA3", matroskaOpinion},
    {"ASF", 0, "\x30\x26\xB2\x75\x8E\x66\xCF\x11\xA6\xD9\x00\xAA\x00\x62\xCE\x6C"sv, asfOpinion},
    {"Flash video", 0, "FLV\1", flashVideoOpinion},
    {"DVD film", 0, "\0\0\1\xBA"sv, dvdVideoOpinion},
    {"DVD information", 0, "DVDVIDEO-V", dvdInformationOpinion},
    {"MXF", 0, "\x06\x0E\x2B\x34\x02\x05\x01\x01\x0D\x01\x02\x01\x01\x02", materialExchangeOpinion},
    {"RealMedia", 0, ".RMF", realMediaOpinion},
    {"ID3, MP3", 0, "ID3", id3Opinion},
    {"ID3, MP3", 0, "\xFF\xFB", layer3Opinion},
    {"ID3, MP3", 0, "\xFF\xFA", layer3Opinion},
    {"ID3, MP3", 0, "\xFF\xF3", layer3Opinion},
    {"ID3, MP3", 0, "\xFF\xF2", layer3Opinion},
    {"ID3, MP3", 0, "\xFF\xE3", layer3Opinion},
    {"FLAC", 0, "fLaC", flacOpinion},
    {"Ogg", 0, "OggS", oggOpinion},
    {"Sun sound", 0, ".snd", sunSoundOpinion},
    {"CAF", 0, "caff\0\1"sv, coreAudioOpinion},
    {"MIDI", 0, "MThd", midiOpinion},
    {"Monkey's Audio", 0, "MAC ", monkeyAudioOpinion},
    {"WavPack", 0, "wvpk", wavPackOpinion},
    {"voice file", 0, "Creative Voice File\x1A", voiceOpinion},
    {"zip", 0, "PK\3\4", zipOpinion},
    {"zip", 0, "PK\5\6", emptyZipOpinion},
    {"7-Zip", 0, "7z\xBC\xAF\x27\x1C", sevenZipOpinion},
    {"RAR 5", 0, "Rar!\x1A\x07\x01\x00"sv, rar5Opinion},
    {"RAR 4", 0, "Rar!\x1A\x07\x00"sv, rar4Opinion},
    {"cabinet", 0, "MSCF", cabinetOpinion},
    {"ARJ", 0, "\x60\xEA", arjOpinion},
    {"gzip", 0, "\x1F\x8B\x08", gzipOpinion},
    {"bzip2", 0, "BZh", bzip2Opinion},
    {"xz", 0,
     "\xFD"
     "7zXZ\0"sv,
     xzOpinion},
    {"LZ4", 0, "\x04\x22\x4D\x18", lz4Opinion},
    {"Zstandard", 0, "\x28\xB5\x2F\xFD", zstandardOpinion},
    {"ar", 0, "!<arch>\n", arOpinion},
    {"xar", 0, "xar!", xarOpinion},
    {"compound file", 0, "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", compoundFileOpinion},
    {"PDF", 0, "%PDF-", pdfOpinion},
    {"PostScript", 0, "\xC5\xD0\xD3\xC6", postScriptOpinion},
    {"SQLite", 0, "SQLite format 3\0"sv, sqliteOpinion},
    {"mail store", 0, "!BDN", mailStoreOpinion},
    {"Express mail", 0, "\xCF\xAD\x12\xFE", expressMailOpinion},
    {"shapefile", 0, "\x00\x00\x27\x0A"sv, shapeOpinion},
    {"drawing", 0, "AC10", drawingOpinion},
    {"metafile", 0, "\xD7\xCD\xC6\x9A", metafileOpinion},
    {"metafile", 0, "\x01\x00\x09\x00\x00\x03"sv, metafileOpinion},
    {"glTF", 0, "glTF", sceneOpinion},
    {"3D Studio", 0, "MM", studioOpinion},
    {"HDF5", 0, "\x89HDF\r\n\x1A\n", hierarchicalDataOpinion},
    {"LAS", 0, "LASF", pointCloudOpinion},
    {"E57", 0, "ASTM-E57", scanOpinion},
    {"GRIB", 0, "GRIB", gribOpinion},
    {"BUFR", 0, "BUFR", bufrOpinion},
    {"WAD", 0, "IWAD", gameDataOpinion},
    {"WAD", 0, "PWAD", gameDataOpinion},
    {"font", 0, "\0\1\0\0"sv, fontOpinion, isFont},
    {"font", 0, "OTTO", fontOpinion, isFont},
    {"font", 0, "true", fontOpinion, isFont},
    {"font", 0, "typ1", fontOpinion, isFont},
    {"font collection", 0, "ttcf", fontCollectionOpinion},
    {"web font", 0, "wOFF", webFontOpinion},
    {"web font", 0, "wOF2", webFontOpinion},
    {"Windows program", 0, "MZ", windowsProgramOpinion},
    {"ELF", 0,
     "\x7F"
     "ELF",
     elfOpinion},
    {"Mach-O", 0, "\xFE\xED\xFA\xCE", machOpinion},
    {"Mach-O", 0, "\xFE\xED\xFA\xCF", machOpinion},
    {"Mach-O", 0, "\xCE\xFA\xED\xFE", machOpinion},
    {"Mach-O", 0, "\xCF\xFA\xED\xFE", machOpinion},
    {"fat program, class", 0, "\xCA\xFE\xBA\xBE", fatProgramOpinion},
    {"DEX", 0, "dex\n", dexOpinion},
    {"Flash", 0, "FWS", flashOpinion},
    {"VHD", 0, "conectix", vhdOpinion},
    {"VHDX", 0, "vhdxfile", vhdxOpinion},
    {"VMDK", 0, "KDMV", vmdkOpinion},
    {"QCOW2", 0, "QFI\xFB", qcow2Opinion},
    {"Windows image", 0, "MSWIM\0\0\0"sv, windowsImageOpinion},
    {"Squashfs", 0, "hsqs", squashfsOpinion},
    {"registry hive", 0, "regf", hiveOpinion},
    {"event log", 0, "ElfFile\0"sv, eventLogOpinion},
    {"link", 0, "\x4C\x00\x00\x00\x01\x14\x02\x00"sv, linkOpinion},
    {"WinHelp", 0, "\x3F\x5F\x03\x00"sv, oldHelpOpinion},
    {"HTML help", 0, "ITSF", helpOpinion},
    {"minidump", 0, "MDMP", dumpOpinion},
    {"OneNote", 0, "\xE4\x52\x5C\x7B\x8C\xD8\xA7\x4D", notebookOpinion},
    {"OneNote", 0, "\xA1\x2F\xFF\x43\xD9\xEF\x76\x4C", notebookOpinion},
    {"dBASE", 0, "\x03", dbaseOpinion, isDbaseTable},
    {"dBASE", 0, "\x30", dbaseOpinion, isDbaseTable},
    {"dBASE", 0, "\x31", dbaseOpinion, isDbaseTable},
    {"dBASE", 0, "\x43", dbaseOpinion, isDbaseTable},
    {"dBASE", 0, "\x83", dbaseOpinion, isDbaseTable},
    {"dBASE", 0, "\x8B", dbaseOpinion, isDbaseTable},
    {"dBASE", 0, "\xF5", dbaseOpinion, isDbaseTable},
    {"transport stream", 188, "G", transportStreamOpinion, isTransportStream},
    {"transport stream", 4, "G", timedStreamOpinion, isTimedStream},
});

// For each first byte the lines of the table that it can lead to, in their order; those with a signature elsewhere
// belong to every byte. Where each list begins, and all lists behind one another.
struct Index {
    static constexpr std::size_t bytes = 256;
    static constexpr std::size_t deep =
        static_cast<std::size_t>(std::ranges::count_if(kFormats, [](const Format& format) { return format.at != 0; }));
    std::array<std::uint16_t, bytes + 1> begin{};
    std::array<std::uint8_t, bytes * deep + kFormats.size() - deep> lines{};
};
static_assert(kFormats.size() <= 256);

constexpr Index indexed() {
    Index index;
    std::uint16_t next = 0;
    for (std::size_t byte = 0; byte < Index::bytes; ++byte) {
        index.begin[byte] = next;
        for (std::size_t line = 0; line < kFormats.size(); ++line) {
            const auto& format = kFormats[line];
            if (format.at != 0 || static_cast<unsigned char>(format.signature.front()) == byte)
                index.lines[next++] = static_cast<std::uint8_t>(line);
        }
    }
    index.begin[Index::bytes] = next;
    return index;
}

constexpr Index kIndex = indexed();

const Format* formatOf(Bytes head) {
    const auto byte = head.u8(0);
    if (!byte)
        return nullptr;
    for (auto i = kIndex.begin[*byte]; i < kIndex.begin[*byte + 1]; ++i) {
        const auto& format = kFormats[kIndex.lines[i]];
        if (head.has(format.at, format.signature) && (format.confirms == nullptr || format.confirms(head)))
            return &format;
    }
    return nullptr;
}

}  // namespace

std::optional<Doubt> secondOpinion(std::string_view head, std::uint64_t size) {
    const Bytes bytes(head);
    const auto* const format = formatOf(bytes);
    return format == nullptr ? std::nullopt : format->judge(bytes, std::min(size, kLargestSize));
}

std::string_view secondOpinionFormat(std::string_view head) {
    const auto* const format = formatOf(Bytes(head));
    return format == nullptr ? std::string_view() : format->name;
}

}  // namespace quillon
