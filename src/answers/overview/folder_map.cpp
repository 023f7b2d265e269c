// SPDX-License-Identifier: MIT
#include "answers/overview/folder_map.h"

#include <algorithm>

#include <fmt/format.h>

#include "text/list_text.h"
#include "text/numbers.h"

namespace quillon {

namespace {

double weightOf(const Figures& figures, MapArea area) {
    return static_cast<double>(std::max<std::int64_t>(0, area == MapArea::Files ? figures.files : figures.bytes));
}

void takeAway(Figures& from, const Figures& part) {
    from.files -= part.files;
    from.bytes -= part.bytes;
    from.notTested -= part.notTested;
    for (std::size_t i = 0; i < kGradeCount; ++i) from.grades.values[i] -= part.grades.values[i];
}

}  // namespace

const QualityStep& qualityStep(const Figures& figures) {
    const auto value = quality(figures);
    if (!value)
        return kNotJudgedStep;
    return *std::ranges::find_if(kQualitySteps, [&](const QualityStep& step) { return *value >= step.from; });
}

std::vector<MapTile> tilesOf(const FolderNode& folder, MapArea area) {
    MapTile rest{nullptr, "(files here)", folder.facts.figures, 0};
    std::vector<MapTile> tiles;
    for (const auto& child : folder.below) {
        const double weight = weightOf(child->facts.figures, area);
        if (weight > 0)
            tiles.push_back({child.get(), readable(std::string_view(child->facts.name)), child->facts.figures, weight});
    }
    const auto falls = [](const MapTile& a, const MapTile& b) { return a.weight > b.weight; };
    std::ranges::stable_sort(tiles, falls);
    if (tiles.size() > kMostTiles || folder.others > 0)
        rest.name = "(files here and small folders)";
    tiles.resize(std::min(tiles.size(), kMostTiles));
    for (const auto& tile : tiles) takeAway(rest.figures, tile.figures);
    rest.weight = weightOf(rest.figures, area);
    if (rest.weight > 0)
        tiles.insert(std::ranges::upper_bound(tiles, rest, falls), rest);
    return tiles;
}

std::string tileText(const MapTile& tile) {
    const auto value = quality(tile.figures);
    const std::string judged =
        value ? fmt::format("quality {} ({}), ", percent(*value), qualityStep(tile.figures).letter) : "not judged, ";
    return fmt::format("{}: {} files, {}, {}{} bad", tile.name, grouped(tile.figures.files),
                       sizeText(static_cast<std::uint64_t>(std::max<std::int64_t>(0, tile.figures.bytes))), judged,
                       grouped(badFiles(tile.figures)));
}

}  // namespace quillon
