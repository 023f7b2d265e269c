// SPDX-License-Identifier: MIT
#include "evidence/new_files.h"

#include <array>

#include <fmt/format.h>

#include "evidence/name_text.h"
#include "evidence/row_columns.h"

namespace quillon {

struct NewFiles::Column {
    const char* name;
    void (*give)(const File& file, OfferedValue& value);
};

// In the order of the table, which is that in which SQLite asks for them.
constexpr std::array<NewFiles::Column, 24> NewFiles::kColumns{{
    {"id", [](const File& file, OfferedValue& value) { value.give(file.row->id); }},
    {"row", [](const File& file, OfferedValue& value) { value.give(file.row->row); }},
    {"folder", [](const File& file, OfferedValue& value) { value.give(file.folder); }},
    {"name", [](const File& file, OfferedValue& value) { value.give(file.name); }},
    {"name_bytes",
     [](const File& file, OfferedValue& value) {
         if (file.name != file.row->name)
             value.give(Blob{file.row->name});
     }},
    {"extension", [](const File& file, OfferedValue& value) { value.give(file.row->extension); }},
    {"size", [](const File& file, OfferedValue& value) { value.give(file.row->size); }},
    {"modified", [](const File& file, OfferedValue& value) { value.give(file.row->modified); }},
    {"attributes", [](const File& file, OfferedValue& value) { value.give(file.row->attributes); }},
    {"grade", [](const File& file, OfferedValue& value) { value.give(numberOf(file.row->grade)); }},
    {"result", [](const File& file, OfferedValue& value) { value.give(file.row->result); }},
    {"reason", [](const File& file, OfferedValue& value) { value.give(numberOf(file.row->reason)); }},
    {"detail", [](const File& file, OfferedValue& value) { value.give(unlessEmpty(file.row->detail)); }},
    {"unread", [](const File& file, OfferedValue& value) { value.give(unlessZero(file.row->unread)); }},
    {"doubt", [](const File& file, OfferedValue& value) { value.give(unlessEmpty(file.row->doubt)); }},
    {"doubt_detail", [](const File& file, OfferedValue& value) { value.give(unlessEmpty(file.row->doubtDetail)); }},
    {"copied", [](const File& file, OfferedValue& value) { value.give(file.row->copied); }},
    {"verified", [](const File& file, OfferedValue& value) { value.give(file.row->verified); }},
    {"copy_error", [](const File& file, OfferedValue& value) { value.give(unlessEmpty(file.row->copyError)); }},
    {"bad_bytes", [](const File& file, OfferedValue& value) { value.give(file.row->badBytes); }},
    {"bad_ranges", [](const File& file, OfferedValue& value) { value.give(unlessEmpty(file.row->badRanges)); }},
    {"head", [](const File& file, OfferedValue& value) { value.give(file.row->head); }},
    {"tail", [](const File& file, OfferedValue& value) { value.give(unlessEmpty(file.row->tail)); }},
    {"tail_detail", [](const File& file, OfferedValue& value) { value.give(unlessEmpty(file.row->tailDetail)); }},
}};

// A number that is taken already is damage. It undoes the transaction: no copy of each page is kept for the case that
// only the statement is to be undone.
Result<Statement> NewFiles::prepareInsert(Database& database) const {
    std::string columns;
    for (const auto& column : kColumns) columns += (columns.empty() ? "" : ", ") + std::string(column.name);
    return offer(database, *this, columns.c_str()).and_then([&] {
        return database.prepare(fmt::format("INSERT OR ROLLBACK INTO file ({0}) SELECT {0} FROM offered", columns),
                                Tables::Offered);
    });
}

void NewFiles::add(const EvidenceRow& row, std::int64_t folder) {
    if (count_ == files_.size())
        files_.emplace_back();
    File& file = files_[count_++];
    file.row = &row;
    file.folder = folder;
    nameText(row.name, file.name);
}

void NewFiles::give(std::size_t row, int column, OfferedValue& value) const {
    kColumns[static_cast<std::size_t>(column)].give(files_[row], value);
}

}  // namespace quillon
