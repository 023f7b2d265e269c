// SPDX-License-Identifier: MIT
#pragma once

// The folders of a job as a tree view asks for them: loaded as they are opened.

#include <unordered_set>

#include <QAbstractItemModel>

#include "answers/frmOverview_bars.h"
#include "answers/overview/folder_nodes.h"

namespace quillon {

class FolderTree final : public QAbstractItemModel {
    Q_OBJECT

public:
    using QAbstractItemModel::QAbstractItemModel;

    enum Column { Name, Grades, Quality, Bad, Files, Size, ColumnCount };

    /// Null: there are none. They must outlive their use here.
    void setFolders(FolderNodes* folders);
    [[nodiscard]] FolderNode* nodeOf(const QModelIndex& index) const;
    [[nodiscard]] QModelIndex indexOf(const FolderNode& node, int column = 0) const;
    [[nodiscard]] std::optional<BarPicture> picture(const QModelIndex& index) const;

    [[nodiscard]] QModelIndex index(int row, int column, const QModelIndex& parent) const override;
    [[nodiscard]] QModelIndex parent(const QModelIndex& index) const override;
    [[nodiscard]] int rowCount(const QModelIndex& parent) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent) const override;
    [[nodiscard]] bool hasChildren(const QModelIndex& parent) const override;
    [[nodiscard]] bool canFetchMore(const QModelIndex& parent) const override;
    void fetchMore(const QModelIndex& parent) override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    void sort(int column, Qt::SortOrder order) override;

private:
    FolderNodes* folders_ = nullptr;
    FolderOrder order_ = FolderOrder::Name;
    bool falling_ = false;
    // A node may be loaded by others, too; its folders are rows here once this view has asked for them.
    std::unordered_set<const FolderNode*> fetched_;
};

}  // namespace quillon
