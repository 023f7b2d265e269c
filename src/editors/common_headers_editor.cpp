// SPDX-License-Identifier: MIT
#include "editors/common_headers_editor.h"

#include "editors/hex_input.h"
#include "platform/folders.h"
#include "testing/rule_line.h"
#include "testing/shared_copy.h"
#include "text/fields.h"
#include "text/numbers.h"
#include "text/unicode.h"

namespace quillon {

std::vector<CommonHeader> parseCommonHeaders(std::string_view bytes) {
    std::vector<CommonHeader> rows;
    for (const auto line : splitLines(bytes)) {
        const auto fields = splitFields(line);
        if (fields.empty())
            continue;
        const auto field = [&fields](std::size_t i) {
            return PageText{i < fields.size() ? std::string(fields[i]) : std::string()};
        };
        rows.push_back({field(0), field(1), field(2), field(3)});
    }
    return rows;
}

std::string commonHeaderBytes(const std::vector<CommonHeader>& rows) {
    std::string bytes;
    for (const auto& row : rows)
        bytes += row.offset.bytes + "," + row.term.bytes + "," + row.type.bytes + "," + row.id.bytes + "\r\n";
    return bytes;
}

std::string currentPrefix(const ReportMessages& messages) {
    return "Current Prefix : " + utf16ToUtf8(messages[Grade::CommonHeader]);
}

NativePath CommonHeadersEditor::localFile() const {
    return fileIn(installation_.paths().localSettings, kCommonHeadersFileName);
}

NativePath CommonHeadersEditor::sharedFile() const {
    return fileIn(installation_.paths().sharedSettings, kCommonHeadersFileName);
}

void CommonHeadersEditor::readInto(const NativePath& file) {
    const auto bytes = readRuleFile(file);
    rows_ = bytes ? parseCommonHeaders(*bytes) : std::vector<CommonHeader>{};
}

void CommonHeadersEditor::load() {
    rows_.clear();
    selected_ = -1;
    updating_ = false;
    const bool readShared = installation_.paths().useSharedDb && pathExists(sharedFile());
    if (readShared || pathExists(localFile()))
        readInto(readShared ? sharedFile() : localFile());
    saver_.loaded(commonHeaderBytes(rows_));
    // A first reading of a missing file ends the load; so does a second one.
    if (!rows_.empty() || !pathExists(localFile()))
        return;
    readInto(localFile());
    saver_.loaded(commonHeaderBytes(rows_));
    if (!sharedFile().empty())
        passOver(copyKeepingOld(localFile(), sharedFile(), kept_), "the share may be away; the list is loaded");
}

CommonHeadersEditor::Entered CommonHeadersEditor::addOrUpdate() {
    const bool isNumber = fields.offset == "0" || numericPrefix(fields.offset) != 0;
    if (fields.id.empty() || fields.term.empty() || !isNumber || (updating_ && selected_ < 0))
        return Entered::Refused;
    if (fields.hexadecimal && !acceptHexTerm(fields.term, dialogs_))
        return Entered::BadHexDigits;
    CommonHeader row{toPage(fields.offset), toPage(fields.term), PageText{fields.hexadecimal ? "H" : "T"},
                     toPage(fields.id)};
    if (updating_)
        rows_[static_cast<std::size_t>(selected_)] = std::move(row);
    else
        rows_.push_back(std::move(row));
    updating_ = false;
    clear();
    return Entered::Done;
}

void CommonHeadersEditor::selectRow(int row) {
    if (row < 0 || row >= static_cast<int>(rows_.size()))
        return;
    const CommonHeader& header = rows_[static_cast<std::size_t>(row)];
    selected_ = row;
    updating_ = true;
    fields = {toUtf8(header.id), toUtf8(header.term), toUtf8(header.offset), header.type.bytes == "H"};
}

void CommonHeadersEditor::clear() {
    fields = {};
    deleteAllEnabled = false;
}

void CommonHeadersEditor::deleteSelected() {
    if (selected_ < 0)
        return;
    const auto row = rows_.begin() + selected_;
    if (!dialogs_.ask("Delete Common Header ?",
                      "Are you sure you want to delete the entry for " + toUtf8(row->id) + " ?"))
        return;
    rows_.erase(row);
    selected_ = -1;
    updating_ = false;
}

void CommonHeadersEditor::deleteAll() {
    if (!dialogs_.ask("Delete All?", "Are you sure you want to remove all refererences to common file types?"))
        return;
    if (pathExists(localFile()))
        passOver(kept_.moveAway(localFile()), "a file that cannot go is told by nothing here; the list is emptied");
    if (installation_.paths().useSharedDb &&
        dialogs_.ask("Delete Shared Copy?", "Do you want to delete the SHARED copy of the common header types too ?") &&
        pathExists(sharedFile()))
        passOver(kept_.moveAway(sharedFile()), "a file that cannot go is told by nothing here; the list is emptied");
    rows_.clear();
    saver_.forget();
    selected_ = -1;
    updating_ = false;
    clear();
}

Result<void> CommonHeadersEditor::save() {
    const std::string bytes = commonHeaderBytes(rows_);
    auto saved = saver_.save(localFile(), bytes);
    if (saved && installation_.paths().useSharedDb)
        saved = saver_.save(sharedFile(), bytes);
    return saved;
}

}  // namespace quillon
