// SPDX-License-Identifier: MIT
#pragma once

// Shows bytes, read-only: offset, hexadecimal and text panes, a caret moved by mouse and keys, a selection by Shift or
// by dragging. Positions count from 0. Where what stands is told by HexLayout.

#include <optional>
#include <string>

#include <QAbstractScrollArea>

#include "widgets/hex_layout.h"

namespace quillon {

class HexView final : public QAbstractScrollArea {
    Q_OBJECT

public:
    HexView();

    /// Shows other bytes, caret on the first, nothing selected. Tells no caret move: that is for the person's own.
    void setBytes(std::string bytes);
    [[nodiscard]] const std::string& bytes() const { return bytes_; }

    /// Shows other bytes at the same place: caret, selection and the lines in view stay as far as there are bytes.
    /// Tells no caret move.
    void setBytesInPlace(std::string bytes);

    [[nodiscard]] int caret() const { return caret_; }
    /// Moves the caret and brings it into view; held within the bytes. Tells no caret move.
    void setCaret(int index);

    /// First and number of the selected bytes; a count of 0 for none.
    struct Selection {
        int first = 0;
        int count = 0;
    };
    [[nodiscard]] Selection selection() const;
    /// Selects `count` bytes, at least 2, from `first` on, held within the bytes, as the person would: tells the move.
    void select(int first, int count);
    [[nodiscard]] std::string selectedBytes() const;
    /// What Ctrl+C puts on the clipboard: pairs of digits, or characters when the text pane has the caret.
    [[nodiscard]] QString selectionText() const;

    /// Where a byte is painted, in the coordinates of the viewport.
    [[nodiscard]] QRect byteRect(int index, HexPane pane) const;

    /// The colour of zeros and offsets: quieter than the other bytes, and as easy to read as text has to be.
    [[nodiscard]] QColor quietInk() const;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

signals:
    /// The caret or the bytes are others, whoever changed them.
    void placeChanged();
    /// The person moved the caret, or clicked the byte on which it stands already.
    void caretMoved(int index);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void measure();
    void fitScrollBars();
    [[nodiscard]] int linesOnPage() const;
    [[nodiscard]] int leftOf(int column) const;
    [[nodiscard]] std::optional<HexHit> hitAt(const QPoint& point) const;
    void moveTo(int index, bool extend);
    void showCaret();
    void paintLine(QPainter& painter, int line, int top) const;
    void paintByte(QPainter& painter, int index, int top, HexPane pane) const;

    std::string bytes_;
    HexLayout layout_;
    int caret_ = 0;
    int anchor_ = 0;
    HexPane pane_ = HexPane::Hex;
    int charWidth_ = 8;
    int lineHeight_ = 16;
};

}  // namespace quillon
