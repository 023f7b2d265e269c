// SPDX-License-Identifier: MIT
#include "app/settings.h"

#include <type_traits>

namespace quillon {

namespace {

// Calls `visit` with every field in file order. Fields lie directly behind each other, so order and widths are the
// format.
template <typename Settings, typename Visit>
constexpr void forEachField(Settings& s, Visit visit) {
    visit(s.runHeaderTest);
    visit(s.useSkipList);
    visit(s.localPath);
    visit(s.zipPath);
    visit(s.alertRecipient);
    visit(s.zipRecipient);
    visit(s.reservedText);
    visit(s.useCommonHeaders);
    visit(s.useSharedDb);
    visit(s.sharedPath);
    visit(s.alertSourcePort);
    visit(s.alertListenPort);
    visit(s.fileListSeparator);
    visit(s.reservedNumber);
}

template <typename Field>
constexpr std::size_t widthOf() {
    return sizeof(Field);
}

constexpr std::size_t kRecordWidth = 6 * kSettingsTextBytes + 5 * sizeof(std::int16_t) + 2 * sizeof(std::int32_t) + 1;
static_assert(kRecordWidth == kSettingsBytes);
static_assert(widthOf<FixedText<kSettingsTextBytes>>() == kSettingsTextBytes && widthOf<FixedText<1>>() == 1);

template <typename Number>
void putLittleEndian(std::string& out, Number number) {
    const auto bits = static_cast<std::make_unsigned_t<Number>>(number);
    for (std::size_t i = 0; i < sizeof(Number); ++i) {
        out.push_back(static_cast<char>(static_cast<unsigned char>((bits >> (8 * i)) & 0xFFU)));
    }
}

template <typename Number>
Number takeLittleEndian(std::string_view bytes) {
    std::make_unsigned_t<Number> bits = 0;
    for (std::size_t i = sizeof(Number); i-- > 0;) {
        bits = static_cast<std::make_unsigned_t<Number>>((bits << 8) | static_cast<unsigned char>(bytes[i]));
    }
    return static_cast<Number>(bits);
}

}  // namespace

std::string encodeSettings(const AppSettings& settings) {
    std::string out;
    out.reserve(kSettingsBytes);
    forEachField(settings, [&out](const auto& field) {
        if constexpr (std::is_integral_v<std::remove_cvref_t<decltype(field)>>) {
            putLittleEndian(out, field);
        } else {
            out.append(field.raw());
        }
    });
    return out;
}

AppSettings decodeSettings(std::string_view bytes) {
    std::string record(bytes.substr(0, kSettingsBytes));
    record.resize(kSettingsBytes, '\0');
    AppSettings settings;
    std::size_t offset = 0;
    forEachField(settings, [&](auto& field) {
        using Field = std::remove_cvref_t<decltype(field)>;
        const auto piece = std::string_view(record).substr(offset, widthOf<Field>());
        offset += piece.size();
        if constexpr (std::is_integral_v<Field>) {
            field = takeLittleEndian<Field>(piece);
        } else {
            field.setRaw(piece);
        }
    });
    return settings;
}

}  // namespace quillon
