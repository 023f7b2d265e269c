// SPDX-License-Identifier: MIT
#include "messaging/alert_log.h"

#include "platform/folders.h"
#include "platform/whole_file.h"

namespace quillon {

bool AlertLog::isFull(std::size_t more) const {
    const auto size = fileSize(file_);
    return size && *size > 0 && *size + more > limit_ && isRegularFile(file_);
}

Result<void> AlertLog::add(std::string_view record) const {
    if (isFull(record.size())) {
        NativePath older = file_;
        older += ".1";
        if (auto renamed = renameFile(file_, older); !renamed)
            return renamed;
    }
    if (!pathExists(file_)) {
        constexpr unsigned forTheUserAlone = 0600;
        auto made = File::createNew(file_, forTheUserAlone).and_then([](File file) { return file.close(); });
        if (!made)
            return made;
    }
    return appendToFile(file_, record);
}

}  // namespace quillon
