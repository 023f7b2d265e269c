// SPDX-License-Identifier: MIT
#pragma once

// The upper part of the main window: what is set up, and the score board. They stand beside each other where the window
// is wide enough, else below each other; what a small window cannot show is scrolled to.

#include <QScrollArea>

class QBoxLayout;

namespace quillon {

class ScoreBoard;

class MainArea final : public QScrollArea {
public:
    /// The area owns both sides. `board` is a part of `boardSide`.
    MainArea(QWidget* setupSide, QWidget* boardSide, ScoreBoard* board);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Arrangement {
        bool beside;
        int blocks;
    };
    [[nodiscard]] int roomForContent() const;
    [[nodiscard]] int contentHeight() const;
    void arrange(const Arrangement& arrangement);
    void fit();

    QWidget* setupSide_;
    ScoreBoard* board_;
    QBoxLayout* sides_;
    int fittedWidth_ = -1;
    QSize fittedLeast_;  // of the content, as it was fitted
};

}  // namespace quillon
