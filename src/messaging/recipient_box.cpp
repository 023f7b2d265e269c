// SPDX-License-Identifier: MIT
#include "messaging/recipient_box.h"

#include <algorithm>

namespace quillon {

RecipientButton recipientButtonFor(const std::string& selectedItem) {
    if (selectedItem == kQueryItem)
        return {kQueryItem, true};
    return {kTestCaption, selectedItem != kPleaseSelectItem};
}

std::string RecipientBox::text() const {
    const auto at = static_cast<std::size_t>(index);
    return index >= 0 && at < items.size() ? items[at] : std::string();
}

bool RecipientBox::holds(std::string_view item) const {
    return std::find(items.begin(), items.end(), item) != items.end();
}

void RecipientBox::addQuery() {
    if (!holds(kQueryItem))
        items.emplace_back(kQueryItem);
}

void RecipientBox::select(int item) {
    if (item >= 0 && item < static_cast<int>(items.size()))
        index = item;
}

RecipientButton RecipientBox::button() const {
    return tests ? RecipientButton{kTestCaption, testEnabled} : RecipientButton{kQueryItem, queryEnabled};
}

void RecipientBox::choose(int item) {
    index = item;
    if (items.empty())
        return;
    const RecipientButton wanted = recipientButtonFor(text());
    tests = wanted.caption == kTestCaption;
    (tests ? testEnabled : queryEnabled) = wanted.enabled;
}

void RecipientScreen::enable(bool& button, bool enabled) const {
    button = enabled;
    show();
}

void RecipientScreen::showBusy(bool busy) const {
    busyPointer = busy;
    show();
}

void RecipientScreen::showStatus(const std::string& text) const {
    if (!rules.showsStatus)
        return;
    *status = text;
    show();
}

}  // namespace quillon
