// SPDX-License-Identifier: MIT
#include "answers/walk_order.h"

#include <algorithm>

namespace quillon {

namespace {

struct Parted {
    std::string_view name;  // the first part that the two paths do not share
    bool last = false;      // nothing stands below it
};

Parted partFrom(std::string_view path, std::size_t start) {
    const auto slash = path.find('/', start);
    return {path.substr(start, slash == path.npos ? path.npos : slash - start), slash == path.npos};
}

// Where the first part begins that differs, or the last one.
std::size_t firstDifference(std::string_view first, std::string_view second) {
    const auto [at, other] = std::ranges::mismatch(first, second);
    const auto shared = static_cast<std::size_t>(at - first.begin());
    // A path that ends where the other has "/" differs in the part that both have begun.
    const auto slash = first.substr(0, shared).rfind('/');
    return slash == first.npos ? 0 : slash + 1;
}

}  // namespace

std::strong_ordering filesInWalkOrder(std::string_view first, std::string_view second) {
    const std::size_t start = firstDifference(first, second);
    const Parted one = partFrom(first, start);
    const Parted other = partFrom(second, start);
    if (one.last != other.last)
        return one.last ? std::strong_ordering::less : std::strong_ordering::greater;
    return one.name <=> other.name;
}

std::strong_ordering foldersInWalkOrder(std::string_view first, std::string_view second) {
    if (first.empty() || second.empty())
        return first.size() <=> second.size();
    const std::size_t start = firstDifference(first, second);
    const Parted one = partFrom(first, start);
    const Parted other = partFrom(second, start);
    const auto order = one.name <=> other.name;
    return order != 0 ? order : other.last <=> one.last;
}

}  // namespace quillon
