// SPDX-License-Identifier: MIT
#pragma once

// The grades of a job as a picture: one stacked bar, whose legend are the counts around it.

#include <cstdint>

#include <QColor>
#include <QWidget>

#include "testing/grade.h"

namespace quillon {

class GradeBar final : public QWidget {
    Q_OBJECT

public:
    GradeBar();

    /// Painted in the order of the score board; a grade with a count of 0 takes no room. At first, and with nothing
    /// counted, the bar is empty.
    void setCounts(const ByGrade<std::int32_t>& counts);

    [[nodiscard]] QSize sizeHint() const override { return {240, 20}; }
    [[nodiscard]] QSize minimumSizeHint() const override { return {80, 20}; }

signals:
    void clicked();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void describe();
    ByGrade<std::int32_t> counts_;
};

/// The little square of a grade's colour in front of its label.
class GradeSwatch final : public QWidget {
    Q_OBJECT

public:
    explicit GradeSwatch(const QColor& colour);
    [[nodiscard]] QSize sizeHint() const override { return {10, 10}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QColor colour_;
};

}  // namespace quillon
