// SPDX-License-Identifier: MIT
#pragma once

// The box from which a person chooses the computer that is told, and its buttons "Query" and "Test". The main window
// and the zip screen have one each, the setup wizard two.

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "messaging/alert_exchange.h"

namespace quillon {

inline constexpr const char* kQueryItem = "Query";
inline constexpr const char* kTestCaption = "Test";
inline constexpr const char* kPleaseSelectItem = "Please Select";
inline constexpr const char* kNoComputersItem = "No Computers Found";

/// How the wizard's one button reads, and whether it can be used.
struct RecipientButton {
    std::string caption;
    bool enabled = true;

    friend bool operator==(const RecipientButton&, const RecipientButton&) = default;
};

/// The wizard's button for a selected item: "Query" queries, "Please Select" disables it, any other tests.
[[nodiscard]] RecipientButton recipientButtonFor(const std::string& selectedItem);

/// What the box and its buttons show. Names are UTF-8.
struct RecipientBox {
    std::vector<std::string> items;
    int index = -1;  ///< the chosen item, from 0
    bool enabled = true;
    bool queryEnabled = true;
    bool testEnabled = true;
    bool tests = false;  ///< the wizard's one button is "Test" now, otherwise "Query"

    /// The chosen item; empty without a choice.
    [[nodiscard]] std::string text() const;
    [[nodiscard]] bool holds(std::string_view item) const;
    /// Adds "Query" unless an item is exactly that.
    void addQuery();
    /// An item that does not exist is passed over.
    void select(int item);

    /// The wizard's one button as it stands.
    [[nodiscard]] RecipientButton button() const;
    /// Chooses an item, which the wizard's button follows. An empty box leaves the button alone.
    void choose(int item);
};

/// A row in the job log, of the colour of warnings; empty where there is no log.
using WarnInLog = std::function<void(const std::string& text)>;

/// What a query or a test touches of its screen: the box, the hourglass and, where the rules of the screen want one, a
/// line that tells what runs.
struct RecipientScreen {
    const AlertScreenRules& rules;
    RecipientBox& box;
    bool& busyPointer;
    std::string* status;         ///< null where the rules want no line
    std::function<void()> show;  ///< called behind each change
    WarnInLog log = {};

    void enable(bool& button, bool enabled) const;
    void showBusy(bool busy) const;
    void showStatus(const std::string& text) const;
};

}  // namespace quillon
