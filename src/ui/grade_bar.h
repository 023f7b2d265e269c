// SPDX-License-Identifier: MIT
#pragma once

// The grades of a job as a picture: one stacked bar, whose legend are the counts around it.

#include <array>
#include <cstdint>
#include <vector>

#include <QColor>
#include <QString>
#include <QWidget>

namespace quillon {

struct GradePart {
    QString name;
    QColor colour;
    std::int64_t count = 0;
};

class GradeBar final : public QWidget {
    Q_OBJECT

public:
    explicit GradeBar(QWidget* parent = nullptr);

    /// Parts in order of painting; one with a count of 0 takes no room. Nothing counted shows an empty bar.
    void setParts(std::vector<GradePart> parts);
    void setCounts(const std::vector<std::int64_t>& counts);

    [[nodiscard]] QSize sizeHint() const override { return {240, 20}; }
    [[nodiscard]] QSize minimumSizeHint() const override { return {80, 20}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void describe();
    std::vector<GradePart> parts_;
};

/// The little square of a grade's colour in front of its label.
class GradeSwatch final : public QWidget {
    Q_OBJECT

public:
    explicit GradeSwatch(const QColor& colour, QWidget* parent = nullptr);
    [[nodiscard]] QSize sizeHint() const override { return {10, 10}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QColor colour_;
};

}  // namespace quillon
