// SPDX-License-Identifier: MIT
#pragma once

// Dialogs for runs without a person: every question is answered by its first button, and every folder that is asked for
// is the one told.

#include <string>
#include <utility>
#include <vector>

#include "app/dialogs.h"

namespace quillon::test {

class YesDialogs final : public Dialogs {
public:
    explicit YesDialogs(NativePath folder) : folder_(std::move(folder)) {}

    BoxAnswer show(const MessageBox& box) override {
        titles.push_back(box.title);
        return box.buttons == BoxButtons::Ok ? BoxAnswer::Ok : BoxAnswer::Yes;
    }
    std::optional<std::string> input(const std::string& /*title*/, const std::string& /*prompt*/,
                                     const std::string& initial) override {
        return initial;
    }
    std::optional<NativePath> pickFolder(const std::string& /*title*/, const NativePath& /*start*/) override {
        return folder_;
    }
    std::vector<NativePath> pickFiles(const FilePick& /*pick*/) override { return {}; }

    std::vector<std::string> titles;  ///< of the boxes that were shown

private:
    NativePath folder_;
};

}  // namespace quillon::test
