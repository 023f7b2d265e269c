// SPDX-License-Identifier: MIT
#pragma once

// The treemap of the overview: a tile for each folder, as large as its share, coloured by its quality, with the letter
// of the colour. A click chooses a tile, a double click or Enter goes into it, Backspace goes out; the arrow keys go
// from tile to tile.

#include <vector>

#include <QWidget>

#include "answers/overview/folder_map.h"
#include "answers/overview/treemap.h"

namespace quillon {

class FolderMap final : public QWidget {
    Q_OBJECT

public:
    FolderMap();

    /// Other tiles; the first one is the current one, which nobody has chosen yet.
    void setTiles(const std::vector<MapTile>& tiles);
    [[nodiscard]] int tileCount() const { return static_cast<int>(tiles_.size()); }
    [[nodiscard]] int currentTile() const { return current_; }
    /// Where a tile is painted.
    [[nodiscard]] QRect tileRect(int tile) const;

    [[nodiscard]] QSize sizeHint() const override { return {460, 220}; }
    [[nodiscard]] QSize minimumSizeHint() const override { return {200, 120}; }

signals:
    void tileChosen(int tile);
    void tileEntered(int tile);
    void left();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool event(QEvent* event) override;

private:
    void arrange();
    void makeCurrent(int tile);
    [[nodiscard]] int tileAt(const QPoint& point) const;
    void paintTile(QPainter& painter, int tile) const;
    void describe();

    std::vector<MapTile> tiles_;
    std::vector<MapRect> rects_;
    int current_ = -1;
};

/// What the colours of the map mean.
class MapLegend final : public QWidget {
    Q_OBJECT

public:
    MapLegend();
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return {60, sizeHint().height()}; }

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace quillon
