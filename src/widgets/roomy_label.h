// SPDX-License-Identifier: MIT
#pragma once

// A label that has room for its widest text at all times, in whatever font it is shown: a running count neither moves
// what stands beside it nor loses a digit.

#include <QLabel>
#include <QString>

namespace quillon {

class RoomyLabel final : public QLabel {
public:
    explicit RoomyLabel(QString widestText) : widestText_(std::move(widestText)) {}

    [[nodiscard]] QSize sizeHint() const override { return withRoom(QLabel::sizeHint()); }
    [[nodiscard]] QSize minimumSizeHint() const override { return withRoom(QLabel::minimumSizeHint()); }

private:
    [[nodiscard]] QSize withRoom(QSize size) const {
        const QMargins margins = contentsMargins();
        const int text = fontMetrics().horizontalAdvance(widestText_);
        return size.expandedTo({text + margins.left() + margins.right() + 2 * margin(), 0});
    }

    QString widestText_;
};

}  // namespace quillon
