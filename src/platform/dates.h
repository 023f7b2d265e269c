// SPDX-License-Identifier: MIT
#pragma once

// Date and time as text in the user's form, and the clock behind them.

#include <cstdint>
#include <string>

#include "platform/folders.h"

namespace quillon {

/// A moment with its parts in local time.
struct LocalTime {
    int year = 1970;
    int month = 1;  ///< 1 to 12
    int day = 1;
    int hour = 0;
    int minute = 0;
    int second = 0;
    int weekday = 4;  ///< 0 is Sunday
    int yearDay = 0;  ///< 0 is 1 January

    /// Seconds since local midnight.
    [[nodiscard]] std::int64_t secondOfDay() const { return (std::int64_t{hour} * 60 + minute) * 60 + second; }
};

/// The local time of a moment given in seconds since 1970 UTC.
[[nodiscard]] LocalTime toLocalTime(std::int64_t seconds);

/// Tells the time. Tests give one that stands still.
class Clock {
public:
    virtual ~Clock() = default;
    [[nodiscard]] virtual LocalTime now() const = 0;
    /// Milliseconds since some fixed moment; never runs backwards.
    [[nodiscard]] virtual std::int64_t milliseconds() const = 0;
};

class SystemClock final : public Clock {
public:
    [[nodiscard]] LocalTime now() const override;
    [[nodiscard]] std::int64_t milliseconds() const override;
};

/// Texts in the locale's own form (`%x` and `%X`), UTF-8; in the C and POSIX locales, and where a
/// locale of an older code page gives no UTF-8, dd/mm/yyyy and hh:mm:ss.
class DateTexts {
public:
    /// The locale that the environment names; one that the system does not have counts as C.
    DateTexts();
    explicit DateTexts(const char* localeName);
    ~DateTexts();
    DateTexts(const DateTexts&) = delete;
    DateTexts& operator=(const DateTexts&) = delete;

    [[nodiscard]] std::string date(const LocalTime& time) const;
    [[nodiscard]] std::string time(const LocalTime& time) const;
    /// Date and time of day with a blank between; at midnight the date alone, as the general form has it.
    [[nodiscard]] std::string general(const LocalTime& time) const;
    /// The first ten characters of the general form, UTF-16, for a list's row. Kept: on a locale whose date is shorter
    /// the cut runs into the time (test ShortDatesRunIntoTheTime). A comma would split the row and becomes a blank.
    [[nodiscard]] std::u16string firstTen(const LocalTime& time) const;

private:
    [[nodiscard]] std::string format(const char* pattern, const char* plainPattern, const LocalTime& time) const;
    void* locale_ = nullptr;  // the C library's handle; null for the plain form
};

/// Seconds of a day, or of a difference that stays within one, as hh:mm:ss.
[[nodiscard]] std::string clockText(std::int64_t seconds);

}  // namespace quillon
