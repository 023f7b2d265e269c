// SPDX-License-Identifier: MIT
#include "widgets/window_sizes.h"

#include <charconv>
#include <optional>
#include <string>

#include <QWidget>

namespace quillon {
namespace {

constexpr std::string_view kFull = "maximized";

// "1180x780"
std::optional<QSize> sizeFrom(std::string_view text) {
    int width = 0;
    int height = 0;
    const char* const end = text.data() + text.size();
    const auto first = std::from_chars(text.data(), end, width);
    if (first.ec != std::errc() || first.ptr == end || *first.ptr != 'x')
        return std::nullopt;
    const auto second = std::from_chars(first.ptr + 1, end, height);
    if (second.ec != std::errc() || second.ptr != end || width <= 0 || height <= 0)
        return std::nullopt;
    return QSize(width, height);
}

std::string nameOf(const QWidget& window) {
    return "window.size." + window.objectName().toStdString();
}

}  // namespace

void WindowSizes::restore(QWidget& window) {
    const std::string name = nameOf(window);
    const auto stored = readPreferences(appFolder_).value_or(Preferences()).get(Preference<std::string>{name});
    if (!stored)
        return;
    if (stored == kFull)
        window.setWindowState(window.windowState() | Qt::WindowMaximized);
    else if (const auto size = sizeFrom(*stored))
        window.resize(*size);
}

void WindowSizes::opens(const QWidget& window) {
    opened_[window.objectName()] = window.isMaximized() ? QSize() : window.size();
}

void WindowSizes::leave(const QWidget& window) {
    const auto opened = opened_.find(window.objectName());
    const QSize now = window.isMaximized() ? QSize() : window.size();
    if (opened == opened_.end() || opened->second == now)
        return;
    opened->second = now;
    const std::string name = nameOf(window);
    const std::string text =
        now.isValid() ? std::to_string(now.width()) + "x" + std::to_string(now.height()) : std::string(kFull);
    const auto keep = [&](Preferences& preferences) { preferences.set(Preference<std::string>{name}, text); };
    passOver(changePreferences(appFolder_, keep), "a size is a convenience");
}

}  // namespace quillon
