// SPDX-License-Identifier: MIT
#pragma once

// A screen whose logic stands in a class of its own. Whatever the person does is a step: the inputs go to the logic, an
// operation runs, and what came of it is shown.

#include <QWidget>

#include "ui/step_guard.h"
#include "ui/window_event_loop.h"

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
            showState();
            loop_.flush();
        }
        if (running_ == 0 && closeAsked_)
            close();
    }

    /// From the controls into the logic's state.
    virtual void readInputs() = 0;
    /// From the logic's state into the controls.
    virtual void showState() = 0;
    /// The screen has been closed; no step is on the stack.
    virtual void leave() = 0;

    /// A screen that is closed within a step closes behind the last one.
    void closeEvent(QCloseEvent* event) override;

private:
    WindowEventLoop& loop_;
    int running_ = 0;
    bool closeAsked_ = false;
};

}  // namespace quillon
