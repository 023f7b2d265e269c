// SPDX-License-Identifier: MIT
#include "answers/file_export.h"

#include <nlohmann/json.hpp>

#include "evidence/name_text.h"
#include "text/json_text.h"
#include "text/unicode.h"

namespace quillon {

namespace {

using Json = nlohmann::ordered_json;

struct ExportColumn {
    const char* name;
    Json (*value)(const EvidenceRow&);
};

template <typename Value>
Json orNull(const std::optional<Value>& value) {
    return value ? Json(*value) : Json(nullptr);
}

Json orNull(const std::string& text) {
    return text.empty() ? Json(nullptr) : Json(text);
}

Json resultOf(const EvidenceRow& file) {
    if (file.result)
        return *file.result;
    return file.grade ? Json(utf16ToUtf8(kGrades[*file.grade].message.value)) : Json(nullptr);
}

// Kept like the columns of the evidence's view, without the bytes beside the names: the names here lose nothing.
constexpr ExportColumn kColumns[] = {
    {"row", [](const EvidenceRow& file) { return orNull(file.row); }},
    {"path", [](const EvidenceRow& file) { return Json(nameText(file.path())); }},
    {"name", [](const EvidenceRow& file) { return Json(nameText(file.name)); }},
    {"extension", [](const EvidenceRow& file) { return Json(nameText(file.extension)); }},
    {"size", [](const EvidenceRow& file) { return Json(file.size); }},
    {"modified", [](const EvidenceRow& file) { return orNull(file.modified); }},
    {"attributes", [](const EvidenceRow& file) { return Json(file.attributes); }},
    {"grade",
     [](const EvidenceRow& file) { return file.grade ? Json(kGrades[*file.grade].name.value) : Json(nullptr); }},
    {"result", resultOf},
    {"reason",
     [](const EvidenceRow& file) { return file.reason ? Json(reasonRow(*file.reason).name) : Json(nullptr); }},
    {"detail", [](const EvidenceRow& file) { return orNull(file.detail); }},
    {"unread", [](const EvidenceRow& file) { return Json(file.unread); }},
    {"doubt", [](const EvidenceRow& file) { return orNull(file.doubt); }},
    {"doubt_detail", [](const EvidenceRow& file) { return orNull(file.doubtDetail); }},
    {"copied", [](const EvidenceRow& file) { return orNull(file.copied); }},
    {"verified", [](const EvidenceRow& file) { return orNull(file.verified); }},
    {"copy_error", [](const EvidenceRow& file) { return orNull(file.copyError); }},
    {"bad_bytes", [](const EvidenceRow& file) { return orNull(file.badBytes); }},
};

std::string fieldText(const Json& value) {
    if (value.is_null())
        return {};
    return value.is_string() ? value.get<std::string>() : value.dump();
}

constexpr const char* kRecordEnd = "\r\n";

}  // namespace

std::string csvField(std::string_view text, bool spreadsheet) {
    constexpr std::string_view kFormulaBegins = "=+-@\t\r\n";
    const bool formula = spreadsheet && !text.empty() && kFormulaBegins.find(text.front()) != kFormulaBegins.npos;
    const std::string field = formula ? "'" + std::string(text) : std::string(text);
    if (field.find_first_of(",\"\r\n") == field.npos)
        return field;
    std::string quoted = "\"";
    for (const char c : field) quoted += c == '"' ? "\"\"" : std::string(1, c);
    return quoted + "\"";
}

std::vector<std::string> exportColumns() {
    std::vector<std::string> names;
    for (const auto& column : kColumns) names.emplace_back(column.name);
    return names;
}

std::vector<ExportValue> exportValues(const EvidenceRow& file) {
    std::vector<ExportValue> values;
    for (const auto& column : kColumns) {
        const Json value = column.value(file);
        if (value.is_null())
            values.emplace_back();
        else if (value.is_string())
            values.emplace_back(value.get<std::string>());
        else
            values.emplace_back(value.get<std::int64_t>());
    }
    return values;
}

std::string csvHead(const CsvStyle& style) {
    std::string head = style.bom ? "\xEF\xBB\xBF" : "";
    for (const auto& column : kColumns) head += (&column == kColumns ? "" : ",") + std::string(column.name);
    return head + kRecordEnd;
}

std::string csvRecord(const EvidenceRow& file, const CsvStyle& style) {
    std::string record;
    for (const auto& column : kColumns)
        record += (&column == kColumns ? "" : ",") + csvField(fieldText(column.value(file)), style.spreadsheet);
    return record + kRecordEnd;
}

std::string jsonLine(const EvidenceRow& file) {
    Json object;
    for (const auto& column : kColumns) object[column.name] = column.value(file);
    return jsonText(object, -1) + "\n";
}

}  // namespace quillon
