// SPDX-License-Identifier: MIT
#pragma once

// A recipient box whose screen writes down what changes, in order.

#include <string>
#include <vector>

#include "messaging/recipient_box.h"

namespace quillon::test {

class RecordedRecipients {
public:
    [[nodiscard]] RecipientScreen screen(AlertScreen screen) {
        rules_ = &alertScreenRules(screen);
        shown_ = look();
        return {*rules_,
                box,
                busyPointer,
                &status,
                [this] { note(); },
                [this](const std::string& text) { logged.push_back(text); }};
    }

    RecipientBox box;
    bool busyPointer = false;
    std::string status;
    std::vector<std::string> steps;
    std::vector<std::string> logged;  ///< rows of the job log

private:
    struct Look {
        std::vector<std::string> items;
        std::string caption;
        bool buttonsEnabled;
        bool busyPointer;
        std::string status;
    };
    [[nodiscard]] Look look() const {
        const bool enabled = rules_->oneButton ? box.button().enabled : box.queryEnabled && box.testEnabled;
        return {box.items, box.button().caption, enabled, busyPointer, status};
    }
    void note() {
        const Look now = look();
        if (now.items != shown_.items)
            steps.emplace_back(box.enabled ? "items" : "items, box disabled");
        if (now.caption != shown_.caption)
            steps.push_back("caption " + now.caption);
        if (now.buttonsEnabled != shown_.buttonsEnabled)
            steps.emplace_back(now.buttonsEnabled ? "enable" : "disable");
        if (now.busyPointer != shown_.busyPointer)
            steps.emplace_back(now.busyPointer ? "hourglass" : "pointer");
        if (now.status != shown_.status)
            steps.push_back("status \"" + now.status + "\"");
        shown_ = now;
    }

    const AlertScreenRules* rules_ = nullptr;
    Look shown_;
};

}  // namespace quillon::test
