// SPDX-License-Identifier: MIT
#include "answers/wish_condition.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace quillon {

namespace {

// Text of any bytes that ends no SQL.
std::string textLiteral(std::string_view text) {
    std::string digits;
    for (const char byte : text) digits += fmt::format("{:02x}", static_cast<unsigned char>(byte));
    return "CAST(x'" + digits + "' AS TEXT)";
}

template <typename Value, typename Text>
void addCondition(std::string& sql, const char* column, const std::vector<Value>& values, Text text) {
    if (values.empty())
        return;
    std::vector<std::string> texts;
    for (const auto& value : values) texts.push_back(text(value));
    sql += fmt::format(" AND {} IN ({})", column, fmt::join(texts, ", "));
}

}  // namespace

std::string wishCondition(const FileWish& wish) {
    const auto number = [](auto kind) { return std::to_string(static_cast<int>(kind)); };
    std::string sql = "1";
    addCondition(sql, "grade", wish.grades, number);
    addCondition(sql, "reason", wish.reasons, number);
    addCondition(sql, "extension", wish.extensions, textLiteral);
    if (wish.doubt)
        sql += " AND doubt <> ''";
    if (wish.unread)
        sql += " AND (unread > 0 OR bad_bytes > 0 OR grade = " + number(Grade::AccessError) + ")";
    return sql;
}

}  // namespace quillon
