// SPDX-License-Identifier: MIT
#include "widgets/share_wait_box.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "widgets/qt_text.h"
#include "widgets/theme.h"

namespace quillon {

ShareWaitBox::ShareWaitBox() : QDialog(nullptr) {
    setObjectName(QStringLiteral("shareWait"));
    setWindowTitle(QStringLiteral("Shared DB"));
    setWindowModality(Qt::ApplicationModal);
    text_ = new QLabel(this);
    text_->setObjectName(QStringLiteral("shareWaitText"));
    text_->setTextFormat(Qt::PlainText);
    text_->setWordWrap(true);
    text_->setMinimumWidth(420);
    auto* bar = new QProgressBar(this);
    bar->setObjectName(QStringLiteral("shareWaitBar"));
    bar->setRange(0, 0);
    bar->setTextVisible(false);
    auto* goOn = new QPushButton(QStringLiteral("Go on locally"), this);
    goOn->setObjectName(QStringLiteral("goOnLocally"));
    goOn->setAutoDefault(false);
    connect(goOn, &QPushButton::clicked, this, [this] { goesOn_ = true; });

    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    all->setSpacing(kMargin);
    all->addWidget(text_);
    all->addWidget(bar);
    all->addWidget(goOn, 0, Qt::AlignRight);
}

void ShareWaitBox::show(const std::string& text) {
    text_->setText(toQt(text));
    QDialog::show();
}

}  // namespace quillon
