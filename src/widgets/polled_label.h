// SPDX-License-Identifier: MIT
#pragma once

// A label whose text is found elsewhere in its own time: while it is shown, it asks again and again.

#include <functional>
#include <optional>
#include <string>
#include <utility>

#include <QLabel>
#include <QTimer>

#include "widgets/qt_text.h"

namespace quillon {

class PolledLabel final : public QLabel {
public:
    /// `ask` gives another text when there is one. It is called some times a second and must not take long.
    PolledLabel(const char* name, std::function<std::optional<std::string>()> ask) : ask_(std::move(ask)) {
        constexpr int kMilliseconds = 100;
        setObjectName(QLatin1String(name));
        setTextFormat(Qt::PlainText);
        setWordWrap(true);
        setAlignment(Qt::AlignLeft | Qt::AlignTop);
        // Two lines at all times: what is below does not jump.
        setMinimumHeight(2 * fontMetrics().lineSpacing());
        QObject::connect(&timer_, &QTimer::timeout, this, [this] { look(); });
        timer_.start(kMilliseconds);
    }

private:
    void look() {
        if (!isVisible())
            return;
        if (const auto text = ask_()) {
            setText(toQt(*text));
            setToolTip(toQt(*text).toHtmlEscaped());
        }
    }

    std::function<std::optional<std::string>()> ask_;
    QTimer timer_;
};

}  // namespace quillon
