// SPDX-License-Identifier: MIT
#include "widgets/control_maker.h"

#include "widgets/roomy_label.h"
#include "widgets/theme.h"

namespace quillon {

QGroupBox* makeFrame(const char* name, const char* caption) {
    auto* frame = make<QGroupBox>(name);
    frame->setTitle(QLatin1String(caption));
    return frame;
}

QPushButton* makeButton(const char* name, const char* caption) {
    auto* button = make<QPushButton>(name);
    button->setText(QLatin1String(caption));
    return button;
}

QCheckBox* makeCheck(const char* name, const char* caption) {
    auto* box = make<QCheckBox>(name);
    box->setText(QLatin1String(caption));
    return box;
}

QLabel* makeLabel(const char* name, const char* caption) {
    auto* label = make<QLabel>(name);
    label->setTextFormat(Qt::PlainText);
    label->setText(QLatin1String(caption));
    return label;
}

QLabel* makeRoomy(const char* name, const char* widestText) {
    auto* label = new RoomyLabel(QLatin1String(widestText));
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText);
    return label;
}

QLabel* makeCount(const char* name, const char* widestText) {
    QLabel* label = makeRoomy(name, widestText);
    label->setText(QStringLiteral("0"));
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    label->setFont(countFont(label->font()));
    return label;
}

QProgressBar* makeProgress(const char* name, const char* accessibleName) {
    auto* bar = make<QProgressBar>(name);
    bar->setAccessibleName(QLatin1String(accessibleName));
    bar->setTextVisible(false);
    bar->setFixedHeight(10);
    return bar;
}

void keepRoomWhenHidden(QWidget& control) {
    QSizePolicy policy = control.sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    control.setSizePolicy(policy);
}

}  // namespace quillon
