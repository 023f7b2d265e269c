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

namespace {

const ListForm kForm{"Common Headers",
                     [](std::string_view bytes) { return lineRecords(commonHeaderBytes(parseCommonHeaders(bytes))); },
                     lineBytes, mergeRecords};

}  // namespace

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

CommonHeadersEditor::CommonHeadersEditor(const Installation& installation, Dialogs& dialogs, KeptFiles& kept)
    : installation_(installation), dialogs_(dialogs), kept_(kept), copies_(installation, dialogs, kept, kForm) {
}

std::vector<NativePath> CommonHeadersEditor::copies() const {
    std::vector<NativePath> files{localFile()};
    if (installation_.paths().useSharedDb)
        files.push_back(sharedFile());
    return files;
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
    copies_.loaded(commonHeaderBytes(rows_), copies());
    // A first reading of a missing file ends the load; so does a second one.
    if (!rows_.empty() || !pathExists(localFile()))
        return;
    readInto(localFile());
    if (!sharedFile().empty())
        passOver(copies_.change(sharedFile(), [&] { return fillShare(); }),
                 "the share may be away; the list is loaded");
    copies_.loaded(commonHeaderBytes(rows_), copies());
}

// In this program's turn, so nobody is replacing the list: what looked like an empty one, or none, may be one that was
// just being replaced.
Result<void> CommonHeadersEditor::fillShare() {
    if (installation_.paths().useSharedDb) {
        const auto there = readRuleFile(sharedFile());
        if (!there && there.error().kind != ErrorKind::NotFound)
            return failure(there.error());
        auto rows = parseCommonHeaders(there.value_or(""));
        if (!rows.empty()) {
            rows_ = std::move(rows);
            return {};
        }
    }
    return copyKeepingOld(localFile(), sharedFile(), kept_);
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
    copies_.moveAway(localFile());
    if (installation_.paths().useSharedDb &&
        dialogs_.ask("Delete Shared Copy?", "Do you want to delete the SHARED copy of the common header types too ?"))
        copies_.moveAway(sharedFile());
    rows_.clear();
    copies_.forget();
    selected_ = -1;
    updating_ = false;
    clear();
}

Result<void> CommonHeadersEditor::save() {
    std::string bytes = commonHeaderBytes(rows_);
    const auto saved = copies_.save(copies(), bytes, OnFailure::End);
    rows_ = parseCommonHeaders(bytes);
    return saved.back();
}

}  // namespace quillon
