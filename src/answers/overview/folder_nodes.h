// SPDX-License-Identifier: MIT
#pragma once

// The tree of a job's folders, as far as somebody has opened it.

#include <memory>
#include <vector>

#include "answers/overview/overview_source.h"

namespace quillon {

/// What folders beside each other are sorted by.
enum class FolderOrder { Name, Quality, Bad, Files, Bytes };

struct FolderNode {
    FolderFacts facts;
    FolderNode* above = nullptr;  ///< null for the root
    std::size_t place = 0;        ///< among those beside it
    bool loaded = false;
    std::vector<std::unique_ptr<FolderNode>> below;  ///< once it is loaded
    std::int64_t others = 0;                         ///< folders below it that are not told
};

class FolderNodes {
public:
    /// The source must outlive this.
    [[nodiscard]] static Result<FolderNodes> begin(OverviewSource& source);

    [[nodiscard]] FolderNode& root() { return *root_; }
    /// The folders right below a node, once; a second call does nothing.
    [[nodiscard]] Result<void> load(FolderNode& node);

    /// From now on, also for folders that are loaded later. Equal ones stand by name. Nodes stay where they are in
    /// memory; their places change.
    void sort(FolderOrder order, bool falling);

private:
    FolderNodes(OverviewSource& source, FolderFacts root);
    void sortBelow(FolderNode& node) const;

    OverviewSource* source_;
    std::unique_ptr<FolderNode> root_;
    FolderOrder order_ = FolderOrder::Name;
    bool falling_ = false;
};

}  // namespace quillon
