// SPDX-License-Identifier: MIT
#include "setup/database_backup.h"

#include <utility>

#include "archive/file_mask.h"
#include "platform/directory.h"
#include "platform/folders.h"
#include "platform/whole_file.h"
#include "text/unicode.h"

namespace quillon {

namespace {

constexpr const char* kBackupMask = "DBBackup_*.zip";
constexpr std::size_t kDateCharacters = 10;

class Backup {
public:
    Backup(NativePath root, ZipWriter& writer) : root_(std::move(root)), writer_(writer) {}

    // Adds what lies in a folder; `inside` is its place below the root, empty or with a "/" at its end.
    Result<void> addFolder(const Directory& folder, const std::string& inside) {
        EntryNames files;
        EntryNames folders;
        if (auto listed = folder.list(files, folders); !listed)
            return listed;
        files.sort();
        folders.sort();
        for (std::size_t i = 0; i < files.size(); ++i) {
            if (auto added = addFile(std::string(files[i]), inside); !added)
                return added;
        }
        for (std::size_t i = 0; i < folders.size(); ++i) {
            const std::string name(folders[i]);
            const auto opened = folder.openFolder(name);
            if (!opened)
                return failure(opened.error());
            if (auto added = addFolder(*opened, inside + name + "/"); !added)
                return added;
        }
        return {};
    }

private:
    Result<void> addFile(const std::string& name, const std::string& inside) {
        if (isTemporaryName(name) || (inside.empty() && matchesFileMask(name, kBackupMask)))
            return {};
        return writer_.add(root_ / (inside + name), inside + name);
    }

    NativePath root_;
    ZipWriter& writer_;
};

}  // namespace

std::string backupName(const Surroundings& surroundings) {
    const std::u16string now = utf8ToUtf16(surroundings.dates.general(surroundings.clock.now()));
    std::u16string digits;
    for (const char16_t unit : now.substr(0, kDateCharacters)) {
        if (std::u16string_view(u"\\/-:><,;").find(unit) == std::u16string_view::npos)
            digits.push_back(unit);
    }
    return "DBBackup_" + utf16ToUtf8(digits) + ".zip";
}

Result<void> backUpSharedDatabase(const Paths& paths, const Surroundings& surroundings, ZipOptions options) {
    const auto target = childPath(paths.sharedPath, backupName(surroundings));
    if (!target)
        return failure(target.error());
    const auto root = Directory::open(paths.sharedPath);
    if (!root)
        return failure(root.error());
    ZipWriter writer(*target, std::move(options));
    Backup backup(paths.sharedPath, writer);
    return backup.addFolder(*root, "").and_then([&writer] { return writer.finish(); });
}

}  // namespace quillon
