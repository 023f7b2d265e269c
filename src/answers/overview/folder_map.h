// SPDX-License-Identifier: MIT
#pragma once

// The treemap of one folder: its folders, and the files that lie in it by themselves, as shares of it.

#include <string>
#include <vector>

#include "answers/overview/folder_nodes.h"

namespace quillon {

enum class MapArea { Files, Bytes };

/// How good the files of a tile are. The letter tells it without the colour.
struct QualityStep {
    double from;  ///< least quality, 0 to 1
    char letter;
    const char* meaning;
    unsigned colour;  ///< 0xRRGGBB; told apart by lightness and by hue in every kind of sight
    bool dark;        ///< light text stands on it
};
inline constexpr QualityStep kQualitySteps[] = {{0.99, 'A', "99 % and more", 0x2166ac, true},
                                                {0.95, 'B', "95 % and more", 0x7fb2d8, false},
                                                {0.80, 'C', "80 % and more", 0xf4edc3, false},
                                                {0.50, 'D', "50 % and more", 0xf0a35e, false},
                                                {0.00, 'E', "less than 50 %", 0xa32020, true}};
inline constexpr QualityStep kNotJudgedStep{0.0, '-', "nothing could be judged", 0xb9c0c9, false};
/// The letter and colour for a part of the files.
[[nodiscard]] const QualityStep& qualityStep(const Figures& figures);

struct MapTile {
    FolderNode* folder = nullptr;  ///< null: files of the folder itself
    std::string name;              ///< readable
    Figures figures;
    double weight = 0;
};

/// The tiles of a folder that is loaded, the largest first; tiles without weight are left out, and what is beyond
/// `kMostTiles` is one tile of its own, with the files of the folder.
inline constexpr std::size_t kMostTiles = 200;
[[nodiscard]] std::vector<MapTile> tilesOf(const FolderNode& folder, MapArea area);

/// "photos: 1,234 files, 12.0 Mb, quality 98.20% (B), 17 bad"
[[nodiscard]] std::string tileText(const MapTile& tile);

}  // namespace quillon
