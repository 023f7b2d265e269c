// SPDX-License-Identifier: MIT
#include "testing/marker_watch.h"

#include <memory>
#include <utility>

#include "testing/sector_look.h"
#include "testing/sector_markers.h"

namespace quillon {

namespace {

class MarkerWatch final : public ByteWatch {
public:
    explicit MarkerWatch(std::shared_ptr<const SectorMarkers> markers)
        : markers_(std::move(markers)), look_(*markers_) {}

    void begin() override { passOver(look_.take(), "of a file that did not come to its end"); }
    void add(std::string_view bytes) override { look_.add(bytes); }
    void addHole(std::uint64_t bytes) override { look_.addHole(bytes); }
    void addUnread(std::uint64_t bytes) override { look_.addUnread(bytes); }
    ByteRanges end() override { return look_.take().unread; }

private:
    std::shared_ptr<const SectorMarkers> markers_;
    SectorLook look_;
};

}  // namespace

ByteWatchMaker markerWatch(const Paths& paths) {
    auto loaded = loadSectorMarkers(paths);
    if (!loaded)
        return {};
    return [markers = std::make_shared<const SectorMarkers>(*std::move(loaded))] {
        return std::make_unique<MarkerWatch>(markers);
    };
}

}  // namespace quillon
