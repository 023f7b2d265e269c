// SPDX-License-Identifier: MIT
#include "widgets/patient_wait_box.h"

#include <chrono>

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include "app/turn_until.h"
#include "widgets/qt_text.h"
#include "widgets/theme.h"

namespace quillon {

PatientWaitBox::PatientWaitBox(const PatientWait& wait, QWidget* parent) : QDialog(parent), wait_(wait) {
    setObjectName(QStringLiteral("patientWait"));
    setWindowTitle(toQt(wait.title));
    setWindowModality(Qt::ApplicationModal);
    text_ = new QLabel(this);
    text_->setObjectName(QStringLiteral("patientWaitText"));
    text_->setTextFormat(Qt::PlainText);
    text_->setWordWrap(true);
    text_->setMinimumWidth(420);
    text_->setText(toQt(wait.text()));
    auto* bar = new QProgressBar(this);
    bar->setObjectName(QStringLiteral("patientWaitBar"));
    bar->setRange(0, 0);
    bar->setTextVisible(false);
    bar->setFocusPolicy(Qt::StrongFocus);
    bar->setFocus();

    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    all->setSpacing(kMargin);
    all->addWidget(text_);
    all->addWidget(bar);
    if (!wait.leave.empty())
        all->addWidget(makeLeave(), 0, Qt::AlignRight);

    auto* timer = new QTimer(this);
    connect(timer, &QTimer::timeout, this, &PatientWaitBox::look);
    timer->start(kTurnInterval);
}

QPushButton* PatientWaitBox::makeLeave() {
    auto* leave = new QPushButton(toQt(wait_.leave), this);
    leave->setObjectName(QStringLiteral("leaveWait"));
    // Who goes on typing does not leave by that.
    leave->setAutoDefault(false);
    leave->setFocusPolicy(Qt::TabFocus);
    connect(leave, &QPushButton::clicked, this, &QDialog::reject);
    return leave;
}

void PatientWaitBox::reject() {
    if (!wait_.leave.empty())
        QDialog::reject();
}

void PatientWaitBox::look() {
    if (wait_.isOver(std::chrono::milliseconds(0)))
        return accept();
    const QString text = toQt(wait_.text());
    if (text_->text() != text)
        text_->setText(text);
}

}  // namespace quillon
