// SPDX-License-Identifier: MIT
#pragma once

// What the first bytes of several files have in common, place by place, without a window. Places count from 0.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

struct HeadConsensus {
    struct Place {
        unsigned char byte = 0;   ///< the one that most files have; the lowest of several
        std::uint32_t files = 0;  ///< how many have it here
    };
    std::vector<Place> places;  ///< as many as the longest head has bytes
    std::uint32_t files = 0;    ///< that were compared

    /// True when every file has the same byte at this place. One file alone shares nothing.
    [[nodiscard]] bool isShared(std::size_t place) const {
        return files > 1 && place < places.size() && places[place].files == files;
    }
};

/// Takes heads one after the other. A head that is shorter than others has no byte where it ends.
class HeadCounter {
public:
    void add(std::string_view head);
    [[nodiscard]] HeadConsensus result() const;

private:
    using Bytes = std::array<std::uint32_t, 256>;
    std::vector<Bytes> counts_;
    std::uint32_t files_ = 0;
};

/// Places one behind the other that all files share.
struct SharedRun {
    int first = 0;
    int count = 0;

    friend bool operator==(const SharedRun&, const SharedRun&) = default;
};

/// In their order.
[[nodiscard]] std::vector<SharedRun> sharedRuns(const HeadConsensus& consensus);

/// The next run behind the place `behind` that may be a mark: of two bytes or more, and not one byte again and again.
/// Behind the last one comes the first again; none when there is no such run. -1 asks for the first.
[[nodiscard]] std::optional<SharedRun> nextMark(const HeadConsensus& consensus, int behind);

/// For a person, positions from 1: "All 212 files share 62 of 512 bytes: 1-8, 13-20, 33, ...". UTF-8.
[[nodiscard]] std::string consensusText(const HeadConsensus& consensus);
/// Of one place: "Byte 5: 4D in all 212 files", "Byte 9: 00 in 180 of 212 files"; empty where there is none.
[[nodiscard]] std::string placeText(const HeadConsensus& consensus, int place);

}  // namespace quillon
