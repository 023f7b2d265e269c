// SPDX-License-Identifier: MIT
#pragma once

// What the listed files have in common, above the hex view and in its columns: a map of all places, and the line in
// which the caret of the hex view stands. Bytes that all files share are strong, those that vary faint.

#include <QWidget>

#include "testing/suggest/head_consensus.h"

namespace quillon {

class HexView;

class ConsensusLine final : public QWidget {
    Q_OBJECT

public:
    /// The view must outlive this and stand below it, in the same parent.
    explicit ConsensusLine(HexView& view);

    void setConsensus(HeadConsensus consensus);
    [[nodiscard]] const HeadConsensus& consensus() const { return consensus_; }

    /// The place at this point, from 0; -1 for none.
    [[nodiscard]] int placeAt(const QPoint& point) const;
    /// Selects the next mark behind the caret in the hex view; does nothing where files share none.
    void selectNextMark();

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    [[nodiscard]] QRect mapRoom() const;
    /// Where a byte of the caret's line is painted.
    [[nodiscard]] QRect cell(int place, bool asText) const;
    [[nodiscard]] int caretLine() const;
    void paintMap(QPainter& painter) const;
    void paintLine(QPainter& painter) const;
    void paintPlace(QPainter& painter, int place) const;

    HexView& view_;
    HeadConsensus consensus_;
};

}  // namespace quillon
