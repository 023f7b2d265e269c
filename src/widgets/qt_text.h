// SPDX-License-Identifier: MIT
#pragma once

// The border between the core's texts and Qt's: UTF-8, list text and native paths to QString and back.

#include <string>
#include <string_view>

#include <QByteArray>
#include <QFile>
#include <QString>

#include "platform/file.h"

namespace quillon {

[[nodiscard]] inline QString toQt(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

[[nodiscard]] inline QString toQt(std::u16string_view text) {
    return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

[[nodiscard]] inline std::string fromQt(const QString& text) {
    return text.toStdString();
}

/// A path for a Qt call. A name that is not valid UTF-8 cannot pass through Qt: its bad bytes become U+FFFD.
[[nodiscard]] inline QString toQtPath(const NativePath& path) {
    return QFile::decodeName(QByteArray::fromStdString(path.native()));
}

[[nodiscard]] inline NativePath fromQtPath(const QString& path) {
    return NativePath{QFile::encodeName(path).toStdString()};
}

}  // namespace quillon
