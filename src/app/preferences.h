// SPDX-License-Identifier: MIT
#pragma once

// What an installation remembers besides its settings record: `preferences.ini` beside `settings.dat`. The format is
// described in docs/formats/preferences.md.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file.h"
#include "platform/result.h"

namespace quillon {

inline constexpr const char* kPreferencesFileName = "preferences.ini";

/// One preference: the name of its line, and what kind of value stands there. A name has letters, digits, "." and "-"
/// alone, and begins with the area it belongs to: "window.look". Declared where it is used:
///
///   inline constexpr Preference<bool> kKeepsEvidence{"evidence.keep"};
///
/// `Value` is bool ("yes", "no"), std::int64_t, std::string (any bytes) or NativePath.
template <typename Value>
struct Preference {
    std::string_view name;
};

/// The lines of a preferences file. What it does not know it keeps: names of others, remarks, empty lines, the order.
class Preferences {
public:
    Preferences() = default;
    explicit Preferences(std::string_view fileBytes);

    [[nodiscard]] std::string fileBytes() const;

    /// Nothing for a preference that has no line, or whose line does not hold such a value.
    [[nodiscard]] std::optional<bool> get(Preference<bool> preference) const;
    [[nodiscard]] std::optional<std::int64_t> get(Preference<std::int64_t> preference) const;
    [[nodiscard]] std::optional<std::string> get(Preference<std::string> preference) const;
    [[nodiscard]] std::optional<NativePath> get(Preference<NativePath> preference) const;

    void set(Preference<bool> preference, bool value);
    void set(Preference<std::int64_t> preference, std::int64_t value);
    void set(Preference<std::string> preference, std::string_view value);
    void set(Preference<NativePath> preference, const NativePath& value);

    void remove(std::string_view name);

    friend bool operator==(const Preferences&, const Preferences&) = default;

private:
    struct Line {
        std::string name;   // empty: no preference, `value` is the whole line
        std::string value;  // as it stands in the file

        friend bool operator==(const Line&, const Line&) = default;
    };
    [[nodiscard]] std::optional<std::string> find(std::string_view name) const;
    void put(std::string_view name, std::string_view value);

    std::vector<Line> lines_;
};

/// The preferences of an installation. A missing file has none; one that is larger than 1 MiB cannot be read.
[[nodiscard]] Result<Preferences> readPreferences(const NativePath& appFolder);

/// Reads the file, has it changed and saves it whole, if something has changed: what another screen or program has
/// stored meanwhile stays. On failure, also when the file is there and cannot be read, it stays as it was.
[[nodiscard]] Result<void> changePreferences(const NativePath& appFolder,
                                             const std::function<void(Preferences&)>& change);

}  // namespace quillon
