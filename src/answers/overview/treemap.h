// SPDX-License-Identifier: MIT
#pragma once

// A treemap: numbers as areas that fill a rectangle. The layout alone, without a window.

#include <span>
#include <vector>

namespace quillon {

/// In any unit; `width` and `height` are not negative.
struct MapRect {
    double left = 0;
    double top = 0;
    double width = 0;
    double height = 0;

    friend bool operator==(const MapRect&, const MapRect&) = default;
};

/// One rectangle for each weight, in the order of the weights, which must fall or stay equal. Areas are in proportion
/// to the weights and fill `room`; rows are closed where another tile would make them less square. A weight that is not
/// positive gets no room.
[[nodiscard]] std::vector<MapRect> squarified(std::span<const double> weights, const MapRect& room);

enum class MapKey { Left, Right, Up, Down };

/// The tile that a key goes to: the nearest one whose middle lies on that side; the same one where there is none.
[[nodiscard]] std::size_t nextTile(std::span<const MapRect> tiles, std::size_t current, MapKey key);

}  // namespace quillon
