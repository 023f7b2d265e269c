// SPDX-License-Identifier: MIT
#pragma once

// The word on the screen while a share does not answer. Ours.
//
//   shareWaitText      what is waited for
//   shareWaitBar       moves while it lasts
//   goOnLocally        "Go on locally"

#include <QDialog>

#include "app/share_gate.h"

class QLabel;

namespace quillon {

class ShareWaitBox final : public QDialog, public ShareWait {
    Q_OBJECT

public:
    ShareWaitBox();

    void show(const std::string& text) override;
    void hide() override { QDialog::hide(); }
    [[nodiscard]] bool goesOn() const override { return goesOn_; }

    /// Neither Escape nor closing is an answer.
    void reject() override {}

private:
    QLabel* text_ = nullptr;
    bool goesOn_ = false;
};

}  // namespace quillon
