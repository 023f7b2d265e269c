// SPDX-License-Identifier: MIT
#include "app/preferences.h"

#include <algorithm>
#include <charconv>
#include <string>

#include "platform/whole_file.h"
#include "text/fields.h"
#include "text/unicode.h"

namespace quillon {
namespace {

constexpr std::size_t kLargestFile = 1024UL * 1024;
constexpr std::string_view kYes = "yes";
constexpr std::string_view kNo = "no";
constexpr std::string_view kHexDigits = "0123456789ABCDEF";

void appendEscaped(std::string& out, char byte) {
    const auto number = static_cast<unsigned char>(byte);
    out += {'%', kHexDigits[number >> 4U], kHexDigits[number & 0xFU]};
}

// A control character would end the line or vanish in an editor; a blank at either end is cut when the line is read.
bool isPlain(char32_t character, bool atEnd) {
    return character > U' ' ? character != U'%' && (character < 0x7F || character > 0x9F) : character == U' ' && !atEnd;
}

// Readable in an editor, and still every byte comes back.
std::string escaped(std::string_view bytes) {
    std::string out;
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t start = at;
        const auto character = nextUtf8(bytes, at);
        const auto piece = bytes.substr(start, at - start);
        if (character && isPlain(*character, start == 0 || at == bytes.size()))
            out += piece;
        else
            std::ranges::for_each(piece, [&out](char byte) { appendEscaped(out, byte); });
    }
    return out;
}

// A "%" without two hexadecimal digits stands for itself.
std::string unescaped(std::string_view text) {
    std::string out;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char* const digits = text.data() + at + 1;
        unsigned char byte = 0;
        if (text[at] == '%' && at + 2 < text.size() &&
            std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2) {
            out += static_cast<char>(byte);
            at += 2;
        } else {
            out += text[at];
        }
    }
    return out;
}

bool isRemark(std::string_view line) {
    return line.starts_with('#') || line.starts_with(';');
}

}  // namespace

Preferences::Preferences(std::string_view fileBytes) {
    for (const std::string_view line : splitLines(fileBytes)) {
        const auto equals = line.find('=');
        if (equals == line.npos || isRemark(line))
            lines_.push_back({"", std::string(line)});
        else
            lines_.push_back({std::string(trim(line.substr(0, equals))), std::string(trim(line.substr(equals + 1)))});
    }
}

std::string Preferences::fileBytes() const {
    std::string out;
    for (const Line& line : lines_) out += (line.name.empty() ? line.value : line.name + "=" + line.value) + "\n";
    return out;
}

// Of two lines of one name, which only a person can have written, the last one counts.
std::optional<std::string> Preferences::find(std::string_view name) const {
    const auto found =
        std::find_if(lines_.rbegin(), lines_.rend(), [&](const Line& line) { return line.name == name; });
    return found == lines_.rend() ? std::nullopt : std::optional(unescaped(found->value));
}

void Preferences::put(std::string_view name, std::string_view value) {
    const auto found =
        std::find_if(lines_.rbegin(), lines_.rend(), [&](const Line& line) { return line.name == name; });
    if (found == lines_.rend())
        lines_.push_back({std::string(name), escaped(value)});
    else
        found->value = escaped(value);
}

std::optional<bool> Preferences::get(Preference<bool> preference) const {
    const auto text = find(preference.name);
    if (text == kYes || text == kNo)
        return text == kYes;
    return std::nullopt;
}

std::optional<std::int64_t> Preferences::get(Preference<std::int64_t> preference) const {
    const std::string text = find(preference.name).value_or("");
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

std::optional<std::string> Preferences::get(Preference<std::string> preference) const {
    return find(preference.name);
}

std::optional<NativePath> Preferences::get(Preference<NativePath> preference) const {
    return find(preference.name);
}

void Preferences::set(Preference<bool> preference, bool value) {
    put(preference.name, value ? kYes : kNo);
}

void Preferences::set(Preference<std::int64_t> preference, std::int64_t value) {
    put(preference.name, std::to_string(value));
}

void Preferences::set(Preference<std::string> preference, std::string_view value) {
    put(preference.name, value);
}

void Preferences::set(Preference<NativePath> preference, const NativePath& value) {
    put(preference.name, value.native());
}

void Preferences::remove(std::string_view name) {
    std::erase_if(lines_, [name](const Line& line) { return line.name == name; });
}

Result<Preferences> readPreferences(const NativePath& appFolder) {
    const auto bytes = readWholeFile(appFolder / kPreferencesFileName, kLargestFile);
    if (bytes)
        return Preferences(*bytes);
    if (bytes.error().kind == ErrorKind::NotFound)
        return Preferences();
    return failure(bytes.error());
}

Result<void> changePreferences(const NativePath& appFolder, const std::function<void(Preferences&)>& change) {
    const auto before = readPreferences(appFolder);
    if (!before)
        return failure(before.error());
    Preferences after = *before;
    change(after);
    if (after == *before)
        return {};
    return saveWholeFile(appFolder / kPreferencesFileName, after.fileBytes());
}

}  // namespace quillon
