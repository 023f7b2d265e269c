// SPDX-License-Identifier: MIT
#pragma once

// The datagrams of the alert exchange: page text, fields separated by the byte FF. The format is described in
// docs/formats/alert-datagram.md.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "text/page_text.h"

namespace quillon {

inline constexpr char kAlertSeparator = '\xFF';

/// Field 2 of an acknowledgement, compared exactly and with case.
inline constexpr std::string_view kAcknowledgedWord = "Acknowledged";

/// The five fields of an alert, UTF-8.
struct Alert {
    std::string sender;
    std::int16_t ackRequest = 1;
    std::string subject;
    std::string body;
    std::int16_t alertFlag = 0;
};

/// The bytes of an alert. A character that the page lacks, and character 255, which would shift the fields, become "?".
[[nodiscard]] std::string encodeAlert(const Alert& alert);

/// The bytes of the answer of the computer `host`: its name, "0", so that no answer is ever answered, and the word.
[[nodiscard]] std::string encodeAcknowledgement(const std::string& host);

/// The fields of any datagram, page bytes. An empty datagram has no field. The views look into `bytes`.
[[nodiscard]] std::vector<std::string_view> alertFields(std::string_view bytes);

/// Whether field 1 asks for an answer: its numeric value is 1. Blanks are skipped; text that is no number counts as 0.
[[nodiscard]] bool asksForAcknowledgement(std::string_view field);

/// An alert as a receiver reads it; the texts are page text and may hold any character.
struct ReceivedAlert {
    PageText sender;
    bool wantsAnswer = false;
    PageText subject;
    PageText body;
    bool problem = false;
};

/// No value for anything but five fields with a sender.
[[nodiscard]] std::optional<ReceivedAlert> decodeAlert(std::string_view bytes);

/// True for three fields whose last is the word.
[[nodiscard]] bool isAcknowledgement(std::string_view bytes);

}  // namespace quillon
