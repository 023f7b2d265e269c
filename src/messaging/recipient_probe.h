// SPDX-License-Identifier: MIT
#pragma once

// The "Test" button of a recipient box.

#include "app/installation.h"
#include "app/surroundings.h"
#include "messaging/recipient_box.h"

namespace quillon {

/// Where the name goes when the person wants to keep it.
enum class RecipientField {
    None,   ///< the main window: the settings are saved, but no field changes
    Alert,  ///< the zip screen, and the wizard's Combo1
    Zip,    ///< the wizard's Combo2
};

/// Kept: the zip screen's test stores into the field of the main window's alerts (test
/// TheZipScreenStoresTheRecipientOfTheMainWindow).
inline constexpr RecipientField kZipScreenRecipient = RecipientField::Alert;

/// Sends a test alert to the chosen computer, tells how it went and, when it was acknowledged, offers to save the name.
void testRecipient(RecipientField field, AlertExchange& exchange, Installation& installation,
                   const Surroundings& surroundings, const RecipientScreen& screen);

}  // namespace quillon
