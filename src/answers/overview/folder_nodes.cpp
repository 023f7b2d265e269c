// SPDX-License-Identifier: MIT
#include "answers/overview/folder_nodes.h"

#include <algorithm>

namespace quillon {

namespace {

// What a folder is sorted by, as a number. A folder that could not be judged stands behind the best one.
double keyOf(const FolderFacts& folder, FolderOrder order) {
    constexpr double kBehindTheBest = 2;
    switch (order) {
        case FolderOrder::Name:
            return 0;
        case FolderOrder::Quality:
            return quality(folder.figures).value_or(kBehindTheBest);
        case FolderOrder::Bad:
            return static_cast<double>(badFiles(folder.figures));
        case FolderOrder::Files:
            return static_cast<double>(folder.figures.files);
        case FolderOrder::Bytes:
            return static_cast<double>(folder.figures.bytes);
    }
    return 0;
}

}  // namespace

FolderNodes::FolderNodes(OverviewSource& source, FolderFacts root)
    : source_(&source), root_(std::make_unique<FolderNode>()) {
    root_->facts = std::move(root);
}

Result<FolderNodes> FolderNodes::begin(OverviewSource& source) {
    auto root = source.root();
    if (!root)
        return failure(root.error());
    return FolderNodes(source, std::move(*root));
}

Result<void> FolderNodes::load(FolderNode& node) {
    if (node.loaded)
        return {};
    auto list = source_->folders(node.facts);
    if (!list)
        return failure(list.error());
    node.loaded = true;
    node.others = list->others;
    for (auto& facts : list->folders) {
        auto child = std::make_unique<FolderNode>();
        child->facts = std::move(facts);
        child->above = &node;
        node.below.push_back(std::move(child));
    }
    sortBelow(node);
    return {};
}

void FolderNodes::sort(FolderOrder order, bool falling) {
    order_ = order;
    falling_ = falling;
    sortBelow(*root_);
}

void FolderNodes::sortBelow(FolderNode& node) const {
    std::ranges::sort(node.below, [this](const auto& a, const auto& b) {
        const double first = keyOf(a->facts, order_);
        const double second = keyOf(b->facts, order_);
        if (first != second)
            return falling_ ? first > second : first < second;
        const bool byName = order_ == FolderOrder::Name && falling_;
        return byName ? a->facts.name > b->facts.name : a->facts.name < b->facts.name;
    });
    for (std::size_t i = 0; i < node.below.size(); ++i) {
        node.below[i]->place = i;
        sortBelow(*node.below[i]);
    }
}

}  // namespace quillon
