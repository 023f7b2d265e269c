// SPDX-License-Identifier: MIT
#include "messaging/alert_datagram.h"

#include <algorithm>

#include "text/fields.h"
#include "text/numbers.h"

namespace quillon {

namespace {

constexpr std::size_t kAlertFields = 5;
constexpr std::size_t kAcknowledgementFields = 3;

// A field's text in the page, safe between separators.
std::string fieldBytes(const std::string& utf8) {
    std::string bytes = toPage(utf8).bytes;
    std::replace(bytes.begin(), bytes.end(), kAlertSeparator, '?');
    return bytes;
}

std::string joined(std::initializer_list<std::string> fields) {
    std::string bytes;
    for (const std::string& field : fields) {
        if (&field != fields.begin())
            bytes += kAlertSeparator;
        bytes += field;
    }
    return bytes;
}

}  // namespace

std::string encodeAlert(const Alert& alert) {
    return joined({std::string(trimRight(std::string_view(fieldBytes(alert.sender)))), plainNumber(alert.ackRequest),
                   fieldBytes(alert.subject), fieldBytes(alert.body), std::to_string(alert.alertFlag)});
}

std::string encodeAcknowledgement(const std::string& host) {
    return joined({fieldBytes(host), "0", std::string(kAcknowledgedWord)});
}

std::vector<std::string_view> alertFields(std::string_view bytes) {
    return splitFields(bytes, kAlertSeparator);
}

bool asksForAcknowledgement(std::string_view field) {
    return numericPrefix(field) == 1.0;
}

std::optional<ReceivedAlert> decodeAlert(std::string_view bytes) {
    const auto fields = alertFields(bytes);
    if (fields.size() != kAlertFields || trim(fields[0]).empty())
        return std::nullopt;
    return ReceivedAlert{PageText{std::string(trimRight(fields[0]))}, asksForAcknowledgement(fields[1]),
                         PageText{std::string(fields[2])}, PageText{std::string(fields[3])},
                         numericPrefix(fields[4]) == 1.0};
}

bool isAcknowledgement(std::string_view bytes) {
    const auto fields = alertFields(bytes);
    return fields.size() == kAcknowledgementFields && fields[2] == kAcknowledgedWord;
}

}  // namespace quillon
