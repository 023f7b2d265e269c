// SPDX-License-Identifier: MIT
#pragma once

// The grades of recovered files, and all that belongs to a grade: one row of one table, and its place in the orders
// below it. A grade that lacks any of this does not compile.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace quillon {

/// In the order of the lines of "Errors.dat".
enum class Grade : std::uint8_t {
    Good,
    Corrupt,
    NoExtension,
    Unknown,
    Encrypted,
    AccessError,
    TooSmall,
    ZeroBytes,
    InvalidName,  ///< no test gives it; a recount counts it where a list holds its text
    CommonHeader,
    Count  ///< no grade: how many there are
};

inline constexpr std::size_t kGradeCount = static_cast<std::size_t>(Grade::Count);

/// One value for each grade.
template <class T>
struct ByGrade {
    std::array<T, kGradeCount> values{};

    [[nodiscard]] constexpr T& operator[](Grade grade) { return values[static_cast<std::size_t>(grade)]; }
    [[nodiscard]] constexpr const T& operator[](Grade grade) const { return values[static_cast<std::size_t>(grade)]; }

    friend bool operator==(const ByGrade&, const ByGrade&) = default;
};

/// A column of the table; a row that leaves it out does not compile.
template <class T>
struct Column {
    constexpr Column(T given) : value(given) {}
    constexpr operator T() const { return value; }
    T value;
};

/// Its part of the grade bar.
struct BarPart {
    Column<const char*> name;      ///< as the bar reads itself aloud
    Column<std::uint32_t> colour;  ///< 0xRRGGBB; also beside the caption on the score board
};

/// Its controls on the score board.
struct BoardCell {
    Column<const char*> captionControl;
    Column<const char*> caption;
    Column<const char*> countControl;
};

/// What a file of the grade is for the recovery quality.
enum class Quality { NotJudged, Recovered, Lost };

/// How the recount of a list finds the grade of a row by its text.
enum class Recount {
    Equal,           ///< an equal text is counted, and the row is done with
    EqualAndGoesOn,  ///< an equal text is counted, and compared with the grades that follow
    Contained        ///< a text that contains it, less its trailing blanks, is counted, and goes on
};

/// Whether the viewer takes files of the grade to the editor of terms.
enum class Teaching { Allowed, Refused };

/// What a row does in the viewer when a retest gives it the grade.
enum class AfterRetest { Stays, Leaves };

struct GradeRow {
    Column<Grade> grade;
    Column<const char16_t*> message;  ///< the report text, where "Errors.dat" gives none
    Column<const char*> name;         ///< for evidence and scripts
    Column<const char*> jsonKey;      ///< of its counter
    Column<const char*> reportLine;   ///< caption in the completion report; null: it has no line
    BarPart bar;
    BoardCell board;
    Column<Quality> quality;
    Column<Recount> recount;
    Column<Teaching> teaching;
    Column<AfterRetest> afterRetest;
};

// Colours are told apart by lightness as well as by hue, so that the bar can be read by everybody.
// clang-format off
inline constexpr ByGrade<GradeRow> kGrades{{{
    {Grade::Good, u"Header OK", "good", "good", "Good Files : ",
     {"Good", 0x2f9e62}, {"Label4", "Good:", "lGoodFIles"},
     Quality::Recovered, Recount::Equal, Teaching::Allowed, AfterRetest::Leaves},
    {Grade::Corrupt, u"Header Corrupt", "corrupt", "corrupt", "Corrupt Files : ",
     {"Corrupt", 0xd14343}, {"Label5", "Corrupt:", "lCorruptFiles"},
     Quality::Lost, Recount::Equal, Teaching::Allowed, AfterRetest::Stays},
    {Grade::NoExtension, u"No Extension", "no-extension", "no_extension", nullptr,
     {"No extension", 0xb4a1d6}, {"Label1", "No Ext:", "lNoextensioN"},
     Quality::NotJudged, Recount::Equal, Teaching::Allowed, AfterRetest::Stays},
    {Grade::Unknown, u"Unknown or ambiguous file type", "unknown", "unknown", "Unknown Files : ",
     {"Unknown", 0x8792a2}, {"Label6", "Unknown:", "lUnknownFiles"},
     Quality::NotJudged, Recount::Equal, Teaching::Allowed, AfterRetest::Leaves},
    {Grade::Encrypted, u"File encrypted", "encrypted", "encrypted", "Encrypted Files : ",
     {"Encrypted", 0xe0a100}, {"Label20", "Encrypted:", "lEncrypted"},
     Quality::NotJudged, Recount::Equal, Teaching::Refused, AfterRetest::Stays},
    {Grade::AccessError, u"Access error", "access-error", "access_errors", "Access Errors : ",
     {"Access error", 0xe8763a}, {"Label18", "Access errors:", "lAccessErrors"},
     Quality::NotJudged, Recount::EqualAndGoesOn, Teaching::Refused, AfterRetest::Stays},
    {Grade::TooSmall, u"File too small to test (<512 bytes)", "too-small", "small", "Small Files (<512 bytes): ",
     {"Small file", 0x5b7fb5}, {"Label15", "Small Files:", "lSmallFiles"},
     Quality::NotJudged, Recount::Equal, Teaching::Refused, AfterRetest::Stays},
    {Grade::ZeroBytes, u"File is zero bytes", "zero-bytes", "zero_bytes", "Files of zero bytes : ",
     {"Zero bytes", 0xc9ced6}, {"Label14", "Zero Bytes:", "lZeroBytes"},
     Quality::NotJudged, Recount::Equal, Teaching::Refused, AfterRetest::Stays},
    {Grade::InvalidName, u"Invalid File Name", "invalid-name", "bad_name", "Invalid File Names : ",
     {"Invalid file name", 0x8a5a3c}, {"Label17", "Invalid Filename:", "lBadFileName"},
     Quality::NotJudged, Recount::Equal, Teaching::Allowed, AfterRetest::Stays},
    {Grade::CommonHeader, u"Appears to be of file type: ", "common-header", "common", nullptr,
     {"Common header", 0x7cc5a0}, {"Label24", "C/Head:", "lCommon"},
     Quality::Recovered, Recount::Contained, Teaching::Allowed, AfterRetest::Stays},
}}};
// clang-format on

/// Score board and grade bar.
inline constexpr std::array kBoardOrder = {
    Grade::Good,      Grade::CommonHeader, Grade::Corrupt,     Grade::Unknown,   Grade::NoExtension,
    Grade::Encrypted, Grade::AccessError,  Grade::InvalidName, Grade::ZeroBytes, Grade::TooSmall};

/// Counters in a job's result for a script.
inline constexpr std::array kJsonOrder = {Grade::Good,        Grade::Corrupt,  Grade::Unknown,   Grade::CommonHeader,
                                          Grade::NoExtension, Grade::TooSmall, Grade::ZeroBytes, Grade::InvalidName,
                                          Grade::AccessError, Grade::Encrypted};

/// Comparisons of the recount.
inline constexpr std::array kRecountOrder = {
    Grade::Good,      Grade::Corrupt,     Grade::Unknown,     Grade::NoExtension, Grade::TooSmall,
    Grade::ZeroBytes, Grade::InvalidName, Grade::AccessError, Grade::Encrypted,   Grade::CommonHeader};

/// The messages of the completion report.
inline constexpr std::array kReportOrder = {Grade::Corrupt,     Grade::Unknown,   Grade::ZeroBytes, Grade::InvalidName,
                                            Grade::AccessError, Grade::Encrypted, Grade::TooSmall};

/// True when each row of the table stands at the place of its grade.
consteval bool rowsStandInOrder() {
    std::size_t place = 0;
    return std::ranges::all_of(kGrades.values,
                               [&](const GradeRow& row) { return row.grade == static_cast<Grade>(place++); });
}

/// True when the list holds each grade that `belongs` takes once, and no other.
consteval bool eachStandsOnce(const auto& order, auto belongs) {
    return std::ranges::count(order, Grade::Count) == 0 &&
           std::ranges::all_of(kGrades.values, [&](const GradeRow& row) {
               return std::ranges::count(order, row.grade.value) == (belongs(row) ? 1 : 0);
           });
}
consteval bool eachStandsOnce(const auto& order) {
    return eachStandsOnce(order, [](const GradeRow&) { return true; });
}

static_assert(rowsStandInOrder());
static_assert(eachStandsOnce(kBoardOrder));
static_assert(eachStandsOnce(kJsonOrder));
static_assert(eachStandsOnce(kRecountOrder));
static_assert(eachStandsOnce(kReportOrder,
                             [](const GradeRow& row) { return row.grade != Grade::Good && row.reportLine != nullptr; }),
              "the good files have their line above the messages");

}  // namespace quillon
