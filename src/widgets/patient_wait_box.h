// SPDX-License-Identifier: MIT
#pragma once

// The box while somebody else is waited for, as another computer that is changing the database. Ours. Accepted: the
// wait is over; rejected, also by Escape: the person has left it.
//
//   patientWaitText    what is waited for
//   patientWaitBar     moves while it lasts
//   leaveWait          leaves it; not there where it has to be sat out

#include <QDialog>

#include "app/patient_wait.h"

class QLabel;
class QPushButton;

namespace quillon {

class PatientWaitBox final : public QDialog {
    Q_OBJECT

public:
    /// `wait` must outlive this.
    PatientWaitBox(const PatientWait& wait, QWidget* parent);

    /// A wait that has to be sat out is not rejected.
    void reject() override;

private:
    [[nodiscard]] QPushButton* makeLeave();
    void look();

    const PatientWait& wait_;
    QLabel* text_ = nullptr;
};

}  // namespace quillon
