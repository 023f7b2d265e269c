// SPDX-License-Identifier: MIT
// The settings record: every field at its place, 3091 bytes in all, and what short and odd records give.
#include "app/settings.h"

#include <array>
#include <utility>

#include <gtest/gtest.h>

namespace quillon {
namespace {

using Text512 = FixedText<kSettingsTextBytes>;

std::string padded(std::string text, std::size_t width = 512) {
    text.resize(width, ' ');
    return text;
}

struct TextPlace {
    const char* name;
    std::size_t offset;
    Text512 AppSettings::*field;
};

constexpr std::array<TextPlace, 6> kTexts = {{
    {"localPath", 4, &AppSettings::localPath},
    {"zipPath", 516, &AppSettings::zipPath},
    {"alertRecipient", 1028, &AppSettings::alertRecipient},
    {"zipRecipient", 1540, &AppSettings::zipRecipient},
    {"reserved", 2052, &AppSettings::reservedText},
    {"sharedPath", 2568, &AppSettings::sharedPath},
}};

struct NumberPlace {
    const char* name;
    std::size_t offset;
    std::int16_t AppSettings::*field;
};

constexpr std::array<NumberPlace, 5> kNumbers = {{
    {"runHeaderTest", 0, &AppSettings::runHeaderTest},
    {"useSkipList", 2, &AppSettings::useSkipList},
    {"useCommonHeaders", 2564, &AppSettings::useCommonHeaders},
    {"useSharedDb", 2566, &AppSettings::useSharedDb},
    {"reserved", 3089, &AppSettings::reservedNumber},
}};

// A record in which every byte is another one than its neighbours.
std::string oddRecord() {
    std::string bytes(3091, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<char>(static_cast<unsigned char>(i * 7 + i / 251));
    return bytes;
}

TEST(Settings, ANewRecordIs3091ZeroBytes) {
    EXPECT_EQ(encodeSettings(AppSettings{}), std::string(3091, '\0'));
}

TEST(Settings, EveryTextStandsAtItsOffsetFilledUpWithBlanks) {
    for (const auto& place : kTexts) {
        AppSettings settings;
        (settings.*place.field).assign(PageText{"/data/x"});
        std::string expected(3091, '\0');
        expected.replace(place.offset, 512, padded("/data/x"));
        EXPECT_EQ(encodeSettings(settings), expected) << place.name;
        EXPECT_EQ(decodeSettings(expected), settings) << place.name;
    }
}

TEST(Settings, EveryFlagStandsAtItsOffsetLowByteFirst) {
    for (const auto& place : kNumbers) {
        AppSettings settings;
        settings.*place.field = 0x1234;
        std::string expected(3091, '\0');
        expected.replace(place.offset, 2, "\x34\x12");
        EXPECT_EQ(encodeSettings(settings), expected) << place.name;
        settings.*place.field = -2;
        expected.replace(place.offset, 2, "\xFE\xFF");
        EXPECT_EQ(decodeSettings(expected), settings) << place.name;
    }
}

TEST(Settings, PortsStandAtTheirOffsetsLowByteFirst) {
    AppSettings settings;
    settings.alertSourcePort = 12020;
    settings.alertListenPort = -2;
    std::string expected(3091, '\0');
    expected.replace(3080, 4, std::string("\xF4\x2E\0\0", 4));
    expected.replace(3084, 4, "\xFE\xFF\xFF\xFF");
    EXPECT_EQ(encodeSettings(settings), expected);
    EXPECT_EQ(decodeSettings(expected), settings);
}

TEST(Settings, TheSeparatorIsTheByteAt3088) {
    AppSettings settings;
    settings.fileListSeparator.assign(PageText{"_"});
    EXPECT_EQ(encodeSettings(settings)[3088], '_');
}

TEST(Settings, EveryByteOfARecordIsWrittenBackAsItWasLoaded) {
    EXPECT_EQ(encodeSettings(decodeSettings(oddRecord())), oddRecord());
}

TEST(Settings, ReservedFieldsStayByteForByteWhenOthersChange) {
    AppSettings settings = decodeSettings(oddRecord());
    settings.localPath.assign(PageText{"/new"});
    settings.useSharedDb = 1;
    const std::string saved = encodeSettings(settings);
    EXPECT_EQ(saved.substr(2052, 512), oddRecord().substr(2052, 512));
    EXPECT_EQ(saved.substr(3089, 2), oddRecord().substr(3089, 2));
}

TEST(Settings, AShortRecordGivesTheRemainingFieldsAsZeroBytes) {
    for (const std::size_t length : {0U, 1U, 2U, 3U, 4U, 100U, 516U, 2565U, 3080U, 3083U, 3088U, 3090U}) {
        const std::string cut = oddRecord().substr(0, length);
        EXPECT_EQ(encodeSettings(decodeSettings(cut)), cut + std::string(3091 - length, '\0')) << length;
    }
}

TEST(Settings, BytesBehindTheRecordAreIgnored) {
    EXPECT_EQ(encodeSettings(decodeSettings(oddRecord() + "more")), oddRecord());
}

TEST(Settings, APathOfExactly512CharactersFillsItsField) {
    Text512 field;
    const std::string path(512, 'p');
    field.assign(PageText{path});
    EXPECT_EQ(field.raw(), path);
    EXPECT_EQ(field.trimmed().bytes, path);
}

TEST(Settings, ALongerPathIsCutAt512) {
    Text512 field;
    field.assign(PageText{std::string(512, 'p') + "cut"});
    EXPECT_EQ(field.raw(), std::string(512, 'p'));
}

TEST(Settings, AShorterTextLeavesNothingOfALongerOne) {
    Text512 field;
    field.assign(PageText{std::string(512, 'p')});
    field.assign(PageText{"ab"});
    EXPECT_EQ(field.raw(), padded("ab"));
    field.assign(PageText{});
    EXPECT_EQ(field.raw(), padded(""));
}

TEST(Settings, TrailingBlanksAndZeroBytesAreNoTextAndInnerBlanksAre) {
    const std::array<std::pair<std::string, const char*>, 6> cases = {{
        {padded("/data"), "/data"},
        {padded("/my data"), "/my data"},
        {padded("  /data"), "  /data"},
        {std::string(512, '\0'), ""},
        {padded(""), ""},
        {"/data" + std::string(507, '\0'), "/data"},
    }};
    for (const auto& [raw, text] : cases) {
        Text512 field;
        field.setRaw(raw);
        EXPECT_EQ(field.trimmed().bytes, text);
    }
}

}  // namespace
}  // namespace quillon
