// SPDX-License-Identifier: MIT
#include "messaging/messenger.h"

#include <utility>

#include <fmt/format.h>

#include "text/fields.h"

namespace quillon {

namespace {

constexpr std::size_t kMostSources = 4096;

bool isControl(char c) {
    const auto byte = static_cast<unsigned char>(c);
    // The page leaves five bytes open, which stand for control characters of the same number.
    return byte < ' ' || byte == 0x7F || byte == 0x81 || byte == 0x8D || byte == 0x8F || byte == 0x90 || byte == 0x9D;
}

std::string harmless(std::string_view line) {
    std::string shown;
    for (const char c : line) shown += isControl(c) ? "\uFFFD" : toUtf8(PageText{std::string(1, c)});
    return shown;
}

}  // namespace

DatagramKind Messenger::take(std::string_view bytes) {
    if (isAcknowledgement(bytes)) {
        ++counts_.acknowledgements;
        return DatagramKind::Acknowledgement;
    }
    const auto alert = decodeAlert(bytes);
    if (!alert) {
        ++counts_.bad;
        return DatagramKind::Bad;
    }
    ++counts_.alerts;
    if (alert->problem)
        ++counts_.problems;
    store_(*alert);
    if (alert->wantsAnswer)
        answer_(toUtf8(alert->sender));
    show_(*alert);
    return DatagramKind::Alert;
}

bool AlertRate::allows(const HostAddress& source, Moment now) {
    const auto isOver = [now](const Minute& minute) { return now - minute.start >= std::chrono::minutes(1); };
    // Forged addresses must not fill the memory.
    if (minutes_.size() >= kMostSources)
        std::erase_if(minutes_, [&](const auto& one) { return isOver(one.second); });
    if (minutes_.size() >= kMostSources)
        minutes_.clear();
    Minute& minute = minutes_[std::string(source.bytes.begin(), source.bytes.end())];
    if (minute.alerts == 0 || isOver(minute))
        minute = {now, 0};
    return ++minute.alerts <= kMostAlertsAMinute;
}

PageText shortened(const PageText& text, std::size_t most) {
    return text.bytes.size() <= most ? text : PageText{text.bytes.substr(0, most) + " [...]"};
}

ReceivedAlert shortened(ReceivedAlert alert) {
    alert.sender = shortened(alert.sender, 64);
    alert.subject = shortened(alert.subject, 500);
    alert.body = shortened(alert.body, 8000);
    return alert;
}

std::vector<std::string> harmlessLines(const PageText& text) {
    std::vector<std::string> lines;
    for (const std::string_view line : splitLines(text.bytes)) lines.push_back(harmless(line));
    return lines;
}

std::string harmlessLine(const PageText& text) {
    std::string joined;
    for (const std::string& line : harmlessLines(text)) {
        const std::string_view trimmed = trim(line);
        if (trimmed.empty())
            continue;
        if (!joined.empty())
            joined += " | ";
        joined += trimmed;
    }
    return joined;
}

std::string alertText(const std::string& time, const ReceivedAlert& alert) {
    std::string text = fmt::format("{}  {}{}\n  {}\n", time, harmlessLine(alert.sender),
                                   alert.problem ? "  PROBLEM" : "", harmlessLine(alert.subject));
    for (const std::string& line : harmlessLines(alert.body)) text += line.empty() ? "\n" : "    " + line + "\n";
    return text + "\n";
}

std::string alertRecord(const std::string& time, const ReceivedAlert& alert) {
    return fmt::format("{}\t{}\t{}\t{}\t{}\n", time, harmlessLine(alert.sender), alert.problem ? "problem" : "message",
                       harmlessLine(alert.subject), harmlessLine(alert.body));
}

}  // namespace quillon
