// SPDX-License-Identifier: MIT
#include "answers/figures_text.h"

#include <cmath>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "evidence/name_text.h"
#include "text/json_text.h"
#include "text/list_text.h"
#include "text/numbers.h"

namespace quillon {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::int64_t kBarWidth = 24;
constexpr int kFiguresVersion = 1;

/// How a part of the bar is drawn: the letter tells it without colour.
struct BarSign {
    Grade grade;
    char letter;
    int colour;  ///< of the terminal, as a background
};
constexpr BarSign kBarSigns[] = {{Grade::Good, '#', 42}, {Grade::CommonHeader, '+', 46}, {Grade::Corrupt, 'x', 41}};
constexpr char kOtherLetter = '.';
constexpr int kOtherColour = 100;

void addPart(std::string& bar, std::int64_t width, char letter, int colour, TerminalColours colours) {
    if (width <= 0)
        return;
    const std::string part(static_cast<std::size_t>(width), letter);
    bar += colours == TerminalColours::Some ? fmt::format("\x1b[{}m{}\x1b[0m", colour, part) : part;
}

// Each part as wide as its share of the files; what rounding leaves goes to the rest.
std::string bar(const Figures& figures, TerminalColours colours) {
    std::string text;
    std::int64_t left = kBarWidth;
    for (const auto& sign : kBarSigns) {
        const auto files = figures.grades[sign.grade];
        if (files == 0 || figures.files == 0)
            continue;
        const auto share = static_cast<double>(files) / static_cast<double>(figures.files);
        const auto width = std::min(left, std::max<std::int64_t>(1, std::llround(share * kBarWidth)));
        addPart(text, width, sign.letter, sign.colour, colours);
        left -= width;
    }
    addPart(text, left, kOtherLetter, kOtherColour, colours);
    return text;
}

std::string qualityText(const Figures& figures) {
    const auto value = quality(figures);
    return value ? percent(*value) : "-";
}

void addLine(std::string& text, std::string_view caption, std::int64_t number, std::string_view behind = {}) {
    text += fmt::format("  {:<18}{:>15}{}\n", caption, grouped(number), behind);
}

void addNumbers(Json& json, const Figures& figures) {
    json["files"] = figures.files;
    json["bytes"] = figures.bytes;
    const auto value = quality(figures);
    json["quality"] = value ? Json(std::round(*value * 10000) / 100) : Json(nullptr);
    for (const auto& row : kGrades.values) json[row.name.value] = figures.grades[row.grade];
    json["not-tested"] = figures.notTested;
    json["doubtful"] = figures.doubtful;
    const auto whole = wholeQuality(figures);
    json["whole"] = whole ? Json(std::round(*whole * 10000) / 100) : Json(nullptr);
    json["sectors-known"] = figures.sectorsKnown;
    json["unread-sector-files"] = figures.hurt;
    json["unread-sector-bytes"] = figures.unreadBytes;
    for (const auto& row : kReasons) json[row.name] = figures.reasons[static_cast<std::size_t>(row.reason)];
}

std::string dumped(const Json& json) {
    return jsonText(json) + "\n";
}

}  // namespace

std::string summaryText(const Figures& figures, bool knowsAll, TerminalColours colours) {
    const auto base = judged(figures);
    std::string text = fmt::format("Files    {} ({})\n", grouped(figures.files),
                                   sizeText(static_cast<std::uint64_t>(std::max<std::int64_t>(0, figures.bytes))));
    text += fmt::format("Quality  {} of the {} files that could be judged; {} could not\n", qualityText(figures),
                        grouped(base), grouped(figures.files - base));
    if (const auto whole = wholeQuality(figures))
        text += fmt::format("Whole    {} good and whole as far as known: {}\n", percent(*whole),
                            unreadSectorsText(figures));
    text += "         " + bar(figures, colours) + "  # good  + common header  x corrupt  . not judged\n";
    text += "Grades\n";
    for (const Grade grade : kBoardOrder) {
        const bool doubted = grade == Grade::Good && figures.doubtful > 0;
        if (figures.grades[grade] > 0)
            addLine(text, kGrades[grade].name.value, figures.grades[grade],
                    doubted ? fmt::format(", {} of them doubtful", grouped(figures.doubtful)) : "");
    }
    if (figures.notTested > 0)
        addLine(text, "not-tested", figures.notTested);
    if (!knowsAll)
        return text + "Reasons  unknown: there is no evidence beside the list\n";
    text += "Reasons\n";
    for (const auto& row : kReasons) {
        if (const auto files = figures.reasons[static_cast<std::size_t>(row.reason)]; files > 0)
            addLine(text, row.name, files, fmt::format("  {}", row.text));
    }
    return text;
}

std::string tableText(const std::string& what, const FigureRows& rows, TerminalColours colours) {
    constexpr std::size_t kNarrowest = 12;
    std::size_t width = std::max(kNarrowest, what.size());
    for (const auto& [name, figures] : rows) width = std::max(width, readable(std::string_view(name)).size());
    std::string text = fmt::format("{:<{}} {:>11} {:>11} {:>11} {:>11} {:>9}  {}\n", what, width, "files", "size",
                                   "good", "bad", "quality", "# good  + common header  x corrupt  . not judged");
    for (const auto& [name, figures] : rows) {
        const auto good = figures.grades[Grade::Good] + figures.grades[Grade::CommonHeader];
        const auto bad = figures.grades[Grade::Corrupt] + figures.grades[Grade::AccessError];
        const auto shown = name.empty() ? std::string("-") : readable(std::string_view(name));
        text += fmt::format("{:<{}} {:>11} {:>11} {:>11} {:>11} {:>9}  {}\n", shown, width, grouped(figures.files),
                            sizeText(static_cast<std::uint64_t>(std::max<std::int64_t>(0, figures.bytes))),
                            grouped(good), grouped(bad), qualityText(figures), bar(figures, colours));
    }
    return text;
}

std::string summaryJson(const Figures& figures, bool knowsAll, bool unfinished) {
    Json json;
    json["version"] = kFiguresVersion;
    json["evidence"] = knowsAll;
    json["unfinished"] = unfinished;
    addNumbers(json, figures);
    return dumped(json);
}

std::string tableJson(const std::string& what, const FigureRows& rows) {
    Json json = Json::array();
    for (const auto& [name, figures] : rows) {
        Json object = {{what, nameText(name)}};
        addNumbers(object, figures);
        json.push_back(std::move(object));
    }
    return dumped(json);
}

}  // namespace quillon
