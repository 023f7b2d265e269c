// SPDX-License-Identifier: MIT
// The squarified layout: rows of tiles along the shorter side of what is left of the room.
#include "answers/overview/treemap.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace quillon {

namespace {

// How far the worst tile of a row is from a square: 1 for squares. `side`: the length of the row.
double worstRatio(double sum, double largest, double smallest, double side) {
    const double sumSquare = sum * sum;
    const double sideSquare = side * side;
    return std::max(sideSquare * largest / sumSquare, sumSquare / (sideSquare * smallest));
}

double positive(double weight) {
    return weight > 0 ? weight : 0;
}

// Places the row [first, end) of areas along the shorter side of `room`, and takes it off the room.
void placeRow(std::span<const double> areas, double sum, MapRect& room, std::vector<MapRect>& tiles) {
    const bool upright = room.width >= room.height;  // the row is a column at the left edge
    const double side = upright ? room.height : room.width;
    const double depth = side > 0 ? sum / side : 0;
    double along = upright ? room.top : room.left;
    for (const double area : areas) {
        const double length = depth > 0 ? area / depth : 0;
        tiles.push_back(upright ? MapRect{room.left, along, depth, length} : MapRect{along, room.top, length, depth});
        along += length;
    }
    if (upright) {
        room.left += depth;
        room.width = std::max(0.0, room.width - depth);
    } else {
        room.top += depth;
        room.height = std::max(0.0, room.height - depth);
    }
}

}  // namespace

std::vector<MapRect> squarified(std::span<const double> weights, const MapRect& room) {
    double total = 0;
    for (const double weight : weights) total += positive(weight);
    std::vector<double> areas;
    for (const double weight : weights) {
        if (!(weight > 0))
            break;  // weights fall: nothing behind it has room
        areas.push_back(weight / total * room.width * room.height);
    }
    std::vector<MapRect> tiles;
    MapRect left = room;
    for (std::size_t first = 0; first < areas.size();) {
        const double side = std::min(left.width, left.height);
        double sum = areas[first];
        double ratio = worstRatio(sum, areas[first], areas[first], side);
        std::size_t end = first + 1;
        for (; end < areas.size(); ++end) {
            const double next = worstRatio(sum + areas[end], areas[first], areas[end], side);
            if (next > ratio)
                break;
            sum += areas[end];
            ratio = next;
        }
        placeRow(std::span(areas).subspan(first, end - first), sum, left, tiles);
        first = end;
    }
    tiles.resize(weights.size());
    return tiles;
}

std::size_t nextTile(std::span<const MapRect> tiles, std::size_t current, MapKey key) {
    if (current >= tiles.size())
        return tiles.empty() ? current : 0;
    const auto middle = [&](std::size_t i) {
        return std::pair(tiles[i].left + tiles[i].width / 2, tiles[i].top + tiles[i].height / 2);
    };
    const auto [x, y] = middle(current);
    std::size_t best = current;
    double bestWay = std::numeric_limits<double>::max();
    for (std::size_t i = 0; i < tiles.size(); ++i) {
        if (i == current || tiles[i].width <= 0 || tiles[i].height <= 0)
            continue;
        const auto [otherX, otherY] = middle(i);
        const bool level = key == MapKey::Left || key == MapKey::Right;
        const double ahead = key == MapKey::Left    ? x - otherX
                             : key == MapKey::Right ? otherX - x
                             : key == MapKey::Up    ? y - otherY
                                                    : otherY - y;
        const double beside = std::abs(level ? otherY - y : otherX - x);
        constexpr double kBesideCosts = 2;  // what lies straight ahead comes first
        if (ahead > 0 && ahead + kBesideCosts * beside < bestWay) {
            best = i;
            bestWay = ahead + kBesideCosts * beside;
        }
    }
    return best;
}

}  // namespace quillon
