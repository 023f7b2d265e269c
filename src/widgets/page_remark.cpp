// SPDX-License-Identifier: MIT
#include "widgets/page_remark.h"

#include <QLabel>
#include <QLineEdit>

#include "text/page_loss.h"
#include "widgets/qt_text.h"

namespace quillon {

void tellLossOnPage(QLabel& remark, const std::vector<QLineEdit*>& boxes) {
    const auto tell = [&remark, boxes] {
        std::string typed;
        for (const QLineEdit* box : boxes) typed += fromQt(box->text());
        const std::string lost = lostOnPage(typed);
        remark.setText(lost.empty() ? QString() : QStringLiteral("Stored as \"?\" : ") + toQt(lost));
        remark.setVisible(!lost.empty());
    };
    remark.hide();
    for (const QLineEdit* box : boxes) QObject::connect(box, &QLineEdit::textChanged, &remark, tell);
}

}  // namespace quillon
