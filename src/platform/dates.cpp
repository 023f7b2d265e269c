// SPDX-License-Identifier: MIT
#include "platform/dates.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <ctime>
#include <string_view>

#include <locale.h>

#include <fmt/format.h>

#include "text/unicode.h"

namespace quillon {

namespace {

std::tm toTm(const LocalTime& time) {
    std::tm parts{};
    parts.tm_year = time.year - 1900;
    parts.tm_mon = time.month - 1;
    parts.tm_mday = time.day;
    parts.tm_hour = time.hour;
    parts.tm_min = time.minute;
    parts.tm_sec = time.second;
    parts.tm_wday = time.weekday;
    parts.tm_yday = time.yearDay;
    parts.tm_isdst = -1;
    return parts;
}

std::string_view environmentLocale() {
    for (const char* name : {"LC_ALL", "LC_TIME", "LANG"}) {
        const char* value = std::getenv(name);
        if (value != nullptr && *value != '\0')
            return value;
    }
    return "C";
}

bool isPlainLocale(std::string_view name) {
    return name == "C" || name == "POSIX" || name.substr(0, 2) == "C.";
}

bool isUtf8(std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        if (!nextUtf8(text, i))
            return false;
    }
    return true;
}

}  // namespace

LocalTime toLocalTime(std::int64_t seconds) {
    const auto moment = static_cast<std::time_t>(seconds);
    std::tm parts{};
    if (::localtime_r(&moment, &parts) == nullptr)
        return {};
    return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour,
            parts.tm_min,         parts.tm_sec,     parts.tm_wday, parts.tm_yday};
}

LocalTime SystemClock::now() const {
    return toLocalTime(std::time(nullptr));
}

std::int64_t SystemClock::milliseconds() const {
    struct timespec now {};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<std::int64_t>(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

DateTexts::DateTexts() : DateTexts(std::string(environmentLocale()).c_str()) {
}

DateTexts::DateTexts(const char* localeName) {
    if (!isPlainLocale(localeName))
        locale_ = ::newlocale(LC_TIME_MASK | LC_CTYPE_MASK, localeName, nullptr);
}

DateTexts::~DateTexts() {
    if (locale_ != nullptr)
        ::freelocale(static_cast<locale_t>(locale_));
}

std::string DateTexts::format(const char* pattern, const char* plainPattern, const LocalTime& time) const {
    const std::tm parts = toTm(time);
    std::array<char, 256> buffer;
    if (locale_ != nullptr) {
        auto* const locale = static_cast<locale_t>(locale_);
        const auto length = ::strftime_l(buffer.data(), buffer.size(), pattern, &parts, locale);
        if (const std::string_view text(buffer.data(), length); isUtf8(text))
            return std::string(text);
    }
    const auto length = std::strftime(buffer.data(), buffer.size(), plainPattern, &parts);
    return {buffer.data(), length};
}

std::string DateTexts::date(const LocalTime& time) const {
    return format("%x", "%d/%m/%Y", time);
}

std::string DateTexts::time(const LocalTime& time) const {
    return format("%X", "%H:%M:%S", time);
}

std::string DateTexts::general(const LocalTime& moment) const {
    if (moment.secondOfDay() == 0)
        return date(moment);
    return date(moment) + " " + time(moment);
}

std::u16string DateTexts::firstTen(const LocalTime& time) const {
    std::u16string text = utf8ToUtf16(general(time)).substr(0, 10);
    std::replace_if(
        text.begin(), text.end(), [](char16_t c) { return c == u',' || c < u' '; }, u' ');
    return text;
}

std::string clockText(std::int64_t seconds) {
    constexpr std::int64_t day = 24LL * 60 * 60;
    const std::int64_t within = ((seconds % day) + day) % day;
    return fmt::format("{:02}:{:02}:{:02}", within / 3600, within / 60 % 60, within % 60);
}

}  // namespace quillon
