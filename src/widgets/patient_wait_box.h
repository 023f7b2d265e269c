// SPDX-License-Identifier: MIT
#pragma once

// The box while somebody else is waited for, as another computer that is changing the database. Ours. Accepted: the
// wait is over; rejected, also by Escape: the person has left it.
//
//   patientWaitText    what is waited for
//   patientWaitBar     moves while it lasts
//   leaveWait          leaves it

#include <QDialog>

#include "app/patient_wait.h"

class QLabel;

namespace quillon {

class PatientWaitBox final : public QDialog {
    Q_OBJECT

public:
    /// `wait` must outlive this.
    PatientWaitBox(const PatientWait& wait, QWidget* parent);

private:
    void look();

    const PatientWait& wait_;
    QLabel* text_ = nullptr;
};

}  // namespace quillon
