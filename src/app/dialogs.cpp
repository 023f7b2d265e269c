// SPDX-License-Identifier: MIT
#include "app/dialogs.h"

namespace quillon {

void Dialogs::tell(const std::string& title, const std::string& text, BoxStyle style) {
    show({title, text, style, BoxButtons::Ok});
}

bool Dialogs::ask(const std::string& title, const std::string& text, BoxStyle style) {
    return show({title, text, style, BoxButtons::YesNo}) == BoxAnswer::Yes;
}

}  // namespace quillon
