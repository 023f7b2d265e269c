// SPDX-License-Identifier: MIT
#pragma once

// What every screen is. Its logic stands in a class of its own, and its controls speak in one of two ways: an input
// goes into the logic's state and nothing more; a step runs an operation of the logic, and the state is shown behind
// it. Showing is not typing: while the state is shown no control is listened to.
//
// A screen is a window of Qt's and a ScreenSteps, because the main window is a QMainWindow and the others are not.
// What does not depend on the kind of window stands in ScreenSteps, so that only the heads are templates.

#include <type_traits>
#include <utility>

#include <QPushButton>
#include <QWidget>

#include "app/screen_host.h"
#include "app/step_guard.h"
#include "widgets/navigator.h"
#include "widgets/screen_context.h"

class QCloseEvent;

namespace quillon {

class ScreenSteps : public ScreenHost {
public:
    /// Shows the state, unless it is being shown already.
    void showState() override;
    void beep() override;
    void focus(const char* control) override;

protected:
    /// The window is the one that this is a part of. What the context refers to must outlive it.
    ScreenSteps(QWidget& window, const ScreenContext& context, Screen screen);
    ~ScreenSteps() override;

    /// From the logic's state into the controls.
    virtual void showControls() {}
    /// The screen is to be closed, and no step is on the stack: leaves, or asks first. At first it shows the main
    /// window and leaves.
    virtual void leaveOrAsk();

    /// The last line of a screen's constructor: shows the state, from now on also at each refresh of the loop.
    void begin();

    /// A control whose change goes into the state and starts nothing. `operation` takes what the signal tells, or
    /// nothing.
    template <typename Sender, typename Signal, typename Operation>
    void hear(Sender* sender, Signal signal, Operation operation) {
        QObject::connect(sender, signal, &window_, [this, operation](auto&&... told) {
            if (!showing_.running())
                call(operation, told...);
        });
    }

    /// A control that starts a step.
    template <typename Sender, typename Signal, typename Operation>
    void step(Sender* sender, Signal signal, Operation operation) {
        QObject::connect(sender, signal, &window_,
                         [this, operation](auto&&... told) { this->run([&] { call(operation, told...); }); });
    }
    template <typename Operation>
    void click(QPushButton* button, Operation operation) {
        step(button, &QPushButton::clicked, std::move(operation));
    }

    /// One step. It may turn the event loop for seconds, and further steps may run within it.
    template <typename Operation>
    void run(Operation operation) {
        if (showing_.running())
            return;
        {
            const StepGuard guard(steps_);
            operation();
        }
        endStep();
    }
    [[nodiscard]] bool isRunning() const { return steps_.running(); }

    /// Nothing is shown behind the step that leaves, and closing asks no more.
    void markUnloaded() { unloaded_ = true; }
    [[nodiscard]] bool isUnloaded() const { return unloaded_; }
    /// Hides and unloads the screen, which goes as soon as the event loop turns.
    void leave();

    /// A screen that is closed within a step closes behind the last one.
    void closeOrPutOff(QCloseEvent& event);

    /// Who asks whether what stands typed on the screen may be dropped.
    enum class TypedText {
        Asked,      ///< Escape itself, when a person has typed into a box since the screen last set its text
        ScreensOwn  ///< the screen, at every way out
    };
    /// Escape closes the screen.
    void closeOnEscape(TypedText typed = TypedText::Asked);

    ScreenContext context_;

private:
    template <typename Operation, typename... Told>
    static void call(Operation& operation, Told&&... told) {
        if constexpr (std::is_invocable_v<Operation&, Told...>)
            operation(std::forward<Told>(told)...);
        else
            operation();
    }
    void endStep();
    [[nodiscard]] bool mayDropTypedText() const;

    QWidget& window_;
    Screen screen_;
    int refreshNumber_ = 0;
    Steps steps_;
    Steps showing_;
    bool closeLater_ = false;
    bool unloaded_ = false;
};

/// A screen that is a `Window`, with its given name and its title.
template <typename Window>
class StepWindow : public Window, protected ScreenSteps {
protected:
    StepWindow(const ScreenContext& context, Screen screen, const char* name, const char* title)
        : ScreenSteps(*this, context, screen) {
        this->setObjectName(QLatin1String(name));
        this->setWindowTitle(QLatin1String(title));
    }

    void closeEvent(QCloseEvent* event) override { closeOrPutOff(*event); }
};

using StepScreen = StepWindow<QWidget>;

}  // namespace quillon
