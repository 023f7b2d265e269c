// SPDX-License-Identifier: MIT
#pragma once

// A screen whose logic stands in a class of its own. Whatever the person does is a step: the inputs go to the logic, an
// operation runs, and what came of it is shown.

#include <QWidget>

#include "widgets/step_guard.h"
#include "widgets/window_event_loop.h"

class QCloseEvent;

namespace quillon {

class StepScreen : public QWidget {
public:
    /// The loop must outlive the screen.
    explicit StepScreen(WindowEventLoop& loop) : loop_(loop) {}

protected:
    /// One step. It may turn the event loop for seconds, and further steps may run within it.
    template <typename Operation>
    void run(Operation operation) {
        {
            const StepGuard guard(running_);
            readInputs();
            operation();
            if (left_)
                return;
            showState();
            loop_.flush();
        }
        if (running_ == 0 && closeLater_) {
            closeLater_ = false;
            close();
        }
    }

    [[nodiscard]] bool isRunning() const { return running_ > 0; }

    /// Called by a step that has hidden and unloaded the screen, which goes as soon as the event loop turns: nothing is
    /// shown any more.
    void setLeft() { left_ = true; }

    /// From the controls into the logic's state.
    virtual void readInputs() = 0;
    /// From the logic's state into the controls.
    virtual void showState() = 0;
    /// The screen is to be closed, and no step is on the stack: hides and unloads it, or asks first.
    virtual void leaveOrAsk() = 0;

    /// A screen that is closed within a step closes behind the last one.
    void closeEvent(QCloseEvent* event) override;

private:
    WindowEventLoop& loop_;
    int running_ = 0;
    bool closeLater_ = false;
    bool left_ = false;
};

}  // namespace quillon
