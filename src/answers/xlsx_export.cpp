// SPDX-License-Identifier: MIT
#include "answers/xlsx_export.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>
#include <xlsxwriter.h>

#include "answers/file_export.h"
#include "archive/zip_entries.h"
#include "evidence/name_text.h"
#include "text/list_text.h"

namespace quillon {

namespace {

bool isHex(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

// Spreadsheets read _x0041_ as "A": an underline that begins such a word is written as a word itself.
std::string cellText(std::string_view text) {
    constexpr std::size_t kLength = 7;
    std::string cell;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto word = text.substr(i, kLength);
        if (word.size() == kLength && word.starts_with("_x") && word.ends_with('_') &&
            std::ranges::all_of(word.substr(2, 4), isHex))
            cell += "_x005F";
        cell += text[i];
    }
    return cell;
}

constexpr std::string_view kRowEnd = "</row>";

// Counts the rows of all sheets, in pieces that may end anywhere.
class RowCount {
public:
    void add(std::string_view name, std::string_view piece) {
        if (!name.starts_with("xl/worksheets/sheet"))
            return;
        rest_ += piece;
        std::size_t from = 0;
        for (auto at = rest_.find(kRowEnd); at != rest_.npos; at = rest_.find(kRowEnd, from)) {
            ++rows;
            from = at + kRowEnd.size();
        }
        rest_.erase(0, std::max(from, rest_.size() - std::min(rest_.size(), kRowEnd.size() - 1)));
    }

    std::int64_t rows = 0;

private:
    std::string rest_;
};

}  // namespace

void XlsxExport::Free::operator()(lxw_workbook* workbook) const {
    lxw_workbook_free(workbook);
}

XlsxExport::XlsxExport(Replacement replacement, NativePath target, std::uint32_t sheetRows)
    : replacement_(std::move(replacement)), target_(std::move(target)), sheetRows_(sheetRows) {
}

Result<XlsxExport> XlsxExport::begin(const NativePath& target, std::uint32_t sheetRows) {
    auto replacement = Replacement::begin(target);
    if (!replacement)
        return failure(replacement.error());
    File file = replacement->takeFile();  // the library opens it by its name
    XlsxExport made(std::move(*replacement), target, sheetRows);
    made.temporary_ = file.path();
    if (const auto closed = file.close(); !closed)
        return failure(closed.error());
    std::string folder = made.temporary_.parent_path().native();
    lxw_workbook_options options{};
    options.constant_memory = LXW_TRUE;
    options.tmpdir = folder.empty() ? nullptr : folder.data();
    options.use_zip64 = LXW_TRUE;
    made.workbook_.reset(workbook_new_opt(made.temporary_.c_str(), &options));
    if (!made.workbook_)
        return failure(ErrorKind::PathAccess, "no workbook can be made");
    if (const auto opened = made.nextFileSheet(); !opened)
        return failure(opened.error());
    return made;
}

Result<void> XlsxExport::done(int code) const {
    if (code == LXW_NO_ERROR)
        return {};
    return failure(ErrorKind::PathAccess, readable(std::string_view(target_.native())) +
                                              " cannot be written: " + lxw_strerror(static_cast<lxw_error>(code)));
}

Result<void> XlsxExport::write(std::uint16_t column, const std::string& text) {
    return done(worksheet_write_string(sheet_, row_, column, cellText(text).c_str(), nullptr));
}

Result<void> XlsxExport::write(std::uint16_t column, std::int64_t number) {
    constexpr std::int64_t kExact = std::int64_t{1} << 53U;
    if (number > kExact || number < -kExact)
        return write(column, std::to_string(number));
    return done(worksheet_write_number(sheet_, row_, column, static_cast<double>(number), nullptr));
}

Result<void> XlsxExport::openSheet(const std::string& name, const std::vector<std::string>& columns) {
    sheet_ = workbook_add_worksheet(workbook_.get(), name.c_str());
    if (sheet_ == nullptr)
        return failure(ErrorKind::PathAccess, "no sheet can be added to the workbook");
    row_ = 0;
    std::uint16_t at = 0;
    for (const auto& column : columns) {
        if (auto written = write(at++, column); !written)
            return written;
    }
    ++row_;
    ++rows_;
    return {};
}

Result<void> XlsxExport::nextFileSheet() {
    ++fileSheets_;
    return openSheet(fileSheets_ == 1 ? "Files" : fmt::format("Files {}", fileSheets_), exportColumns());
}

Result<void> XlsxExport::add(const EvidenceRow& file) {
    if (row_ == sheetRows_) {
        if (auto opened = nextFileSheet(); !opened)
            return opened;
    }
    std::uint16_t at = 0;
    for (const auto& value : exportValues(file)) {
        Result<void> written;
        if (const auto* text = std::get_if<std::string>(&value))
            written = write(at, *text);
        else if (const auto* number = std::get_if<std::int64_t>(&value))
            written = write(at, *number);
        if (!written)
            return written;
        ++at;
    }
    ++row_;
    ++rows_;
    return {};
}

Result<void> XlsxExport::nextFigureSheet(const std::string& name, const std::string& what) {
    std::vector<std::string> columns{what, "files", "bytes", "quality"};
    for (const auto& row : kGrades.values) columns.emplace_back(row.name.value);
    columns.insert(columns.end(),
                   {"not-tested", "doubtful", "whole", "sectors-known", "unread-sector-files", "unread-sector-bytes"});
    for (const auto& row : kReasons) columns.emplace_back(row.name);
    return openSheet(name, columns);
}

Result<void> XlsxExport::addFigures(const std::string& sheet, const std::string& what, const FiguresBy& figures) {
    int sheets = 1;
    auto written = nextFigureSheet(sheet, what);
    for (const auto& [name, of] : figures) {
        if (written && row_ == sheetRows_)
            written = nextFigureSheet(fmt::format("{} {}", sheet, ++sheets), what);
        std::uint16_t at = 0;
        const auto put = [&](const auto& value) { written = written.and_then([&] { return write(at++, value); }); };
        put(nameText(name));
        put(of.files);
        put(of.bytes);
        const auto putShare = [&](std::optional<double> share) {
            if (share && written)  // per cent with two decimals
                written = done(worksheet_write_number(sheet_, row_, at, std::round(*share * 10000) / 100, nullptr));
            ++at;
        };
        putShare(quality(of));
        for (const auto files : of.grades.values) put(files);
        put(of.notTested);
        put(of.doubtful);
        putShare(wholeQuality(of));
        put(of.sectorsKnown);
        put(of.hurt);
        put(of.unreadBytes);
        for (const auto files : of.reasons) put(files);
        if (!written)
            return written;
        ++row_;
        ++rows_;
    }
    return written;
}

// The library does not tell when a disk was full while it kept rows aside.
Result<void> XlsxExport::checkRows() const {
    RowCount count;
    const auto read =
        readEntries(temporary_, [&](std::string_view name, std::string_view piece) { count.add(name, piece); });
    if (!read)
        return failure(read.error());
    if (count.rows != rows_)
        return failure(ErrorKind::PathAccess, readable(std::string_view(target_.native())) +
                                                  " cannot be written: rows were lost. Is the disk full?");
    return {};
}

Result<void> XlsxExport::finish() {
    return done(workbook_close(workbook_.release()))
        .and_then([this] { return checkRows(); })
        .and_then([this] { return syncFile(temporary_); })
        .and_then([this] { return replacement_.arrive(); });
}

}  // namespace quillon
