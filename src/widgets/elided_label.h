// SPDX-License-Identifier: MIT
#pragma once

// A label whose long text never widens its window: `text()` is the whole text, what is painted is cut in the middle,
// and the tool tip shows the rest. Always plain text.

#include <QLabel>

namespace quillon {

class ElidedLabel final : public QLabel {
    Q_OBJECT

public:
    ElidedLabel();

    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QString shown() const;
};

}  // namespace quillon
