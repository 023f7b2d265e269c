// SPDX-License-Identifier: MIT
#include "answers/frmOverview_tree.h"

#include <QColor>

#include "text/list_text.h"
#include "text/numbers.h"
#include "widgets/qt_text.h"

namespace quillon {
namespace {

FolderOrder orderOf(int column) {
    switch (column) {
        case FolderTree::Grades:
        case FolderTree::Quality:
            return FolderOrder::Quality;
        case FolderTree::Bad:
            return FolderOrder::Bad;
        case FolderTree::Files:
            return FolderOrder::Files;
        case FolderTree::Size:
            return FolderOrder::Bytes;
        default:
            return FolderOrder::Name;
    }
}

std::string nameOf(const FolderNode& node) {
    std::string name = node.above == nullptr ? "All files" : readable(std::string_view(node.facts.name));
    if (!node.facts.error.empty())
        name += " (could not be entered)";
    if (node.others > 0)
        name += " (" + grouped(node.others) + " folders are not shown)";
    return name;
}

std::string textOf(const FolderNode& node, int column) {
    const Figures& figures = node.facts.figures;
    switch (column) {
        case FolderTree::Name:
            return nameOf(node);
        case FolderTree::Grades:
            return gradesInWords(figures);
        case FolderTree::Quality: {
            const auto value = quality(figures);
            return value ? percent(*value) : "-";
        }
        case FolderTree::Bad:
            return grouped(badFiles(figures));
        case FolderTree::Files:
            return grouped(figures.files);
        default:
            return sizeText(static_cast<std::uint64_t>(std::max<std::int64_t>(0, figures.bytes)));
    }
}

// The whole name, for which there may be no room, and what went wrong.
std::string tipOf(const FolderNode& node) {
    return node.facts.error.empty() ? nameOf(node) : nameOf(node) + ": " + node.facts.error;
}

constexpr const char* kTitles[] = {"Folder", "Grades", "Quality", "Bad", "Files", "Size"};

}  // namespace

void FolderTree::setFolders(FolderNodes* folders) {
    if (folders == folders_)
        return;
    beginResetModel();
    folders_ = folders;
    fetched_.clear();
    if (folders_ != nullptr)
        folders_->sort(order_, falling_);  // as the titles of the columns say
    endResetModel();
}

FolderNode* FolderTree::nodeOf(const QModelIndex& index) const {
    return index.isValid() ? static_cast<FolderNode*>(index.internalPointer()) : nullptr;
}

QModelIndex FolderTree::indexOf(const FolderNode& node, int column) const {
    return createIndex(static_cast<int>(node.place), column, &node);
}

std::optional<BarPicture> FolderTree::picture(const QModelIndex& index) const {
    const FolderNode* const node = nodeOf(index);
    return node != nullptr ? std::optional(barOf(node->facts.figures)) : std::nullopt;
}

QModelIndex FolderTree::index(int row, int column, const QModelIndex& parent) const {
    if (folders_ == nullptr || row < 0 || column < 0 || row >= rowCount(parent) || column >= ColumnCount)
        return {};
    const FolderNode* const above = nodeOf(parent);
    return above == nullptr ? createIndex(0, column, &folders_->root())
                            : createIndex(row, column, above->below[static_cast<std::size_t>(row)].get());
}

QModelIndex FolderTree::parent(const QModelIndex& index) const {
    const FolderNode* const node = nodeOf(index);
    return node == nullptr || node->above == nullptr ? QModelIndex() : indexOf(*node->above);
}

int FolderTree::rowCount(const QModelIndex& parent) const {
    const FolderNode* const node = nodeOf(parent);
    if (node == nullptr)
        return folders_ != nullptr ? 1 : 0;
    return parent.column() == 0 && fetched_.contains(node) ? static_cast<int>(node->below.size()) : 0;
}

int FolderTree::columnCount(const QModelIndex& /*parent*/) const {
    return ColumnCount;
}

bool FolderTree::hasChildren(const QModelIndex& parent) const {
    const FolderNode* const node = nodeOf(parent);
    return node == nullptr ? folders_ != nullptr : node->facts.hasFolders;
}

bool FolderTree::canFetchMore(const QModelIndex& parent) const {
    const FolderNode* const node = nodeOf(parent);
    return node != nullptr && node->facts.hasFolders && !fetched_.contains(node);
}

void FolderTree::fetchMore(const QModelIndex& parent) {
    FolderNode* const node = nodeOf(parent);
    if (node == nullptr || fetched_.contains(node) || !folders_->load(*node) || node->below.empty())
        return;
    beginInsertRows(parent, 0, static_cast<int>(node->below.size()) - 1);
    fetched_.insert(node);
    endInsertRows();
}

QVariant FolderTree::data(const QModelIndex& index, int role) const {
    const FolderNode* const node = nodeOf(index);
    if (node == nullptr)
        return {};
    if (role == Qt::DisplayRole)
        return toQt(textOf(*node, index.column()));
    // Escaped, since a tool tip guesses whether its text is mark-up.
    if (role == Qt::ToolTipRole && index.column() == Name)
        return QStringLiteral("<span>%1</span>").arg(toQt(tipOf(*node)).toHtmlEscaped());
    if (role == Qt::TextAlignmentRole && index.column() > Grades)
        return static_cast<int>(Qt::AlignRight | Qt::AlignVCenter);
    return {};
}

QVariant FolderTree::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= ColumnCount)
        return {};
    if (role == Qt::DisplayRole)
        return QLatin1String(kTitles[section]);
    if (role == Qt::TextAlignmentRole && section > Grades)
        return static_cast<int>(Qt::AlignRight | Qt::AlignVCenter);
    return {};
}

void FolderTree::sort(int column, Qt::SortOrder order) {
    order_ = orderOf(column);
    falling_ = order == Qt::DescendingOrder;
    if (folders_ == nullptr)
        return;
    emit layoutAboutToBeChanged();
    folders_->sort(order_, falling_);
    for (const QModelIndex& old : persistentIndexList()) {
        if (const FolderNode* const node = nodeOf(old))
            changePersistentIndex(old, indexOf(*node, old.column()));
    }
    emit layoutChanged();
}

}  // namespace quillon
