// SPDX-License-Identifier: MIT
#include "setup/share_trial.h"

#include "platform/folders.h"
#include "platform/whole_file.h"
#include "text/list_text.h"

namespace quillon {

namespace {

Result<void> makeFile(const NativePath& path) {
    return File::createNew(path).and_then(
        [](File file) { return file.write("trial").and_then([&] { return file.close(); }); });
}

// As a save does it: one file over another. Gives what is refused.
std::string refusedIn(const NativePath& folder) {
    const NativePath first = folder / temporaryName();
    const NativePath second = folder / temporaryName();
    const auto refused = [&folder](const char* what, const FileError& why) {
        return readable(folder.native()) + ": no file can be " + what + " there (" + why.cause + ")";
    };
    std::string answer;
    for (const auto& file : {first, second}) {
        if (const auto made = makeFile(file); !made && answer.empty())
            answer = refused("made", made.error());
    }
    if (answer.empty()) {
        if (const auto renamed = renameFile(first, second); !renamed)
            answer = refused("replaced", renamed.error());
    }
    if (answer.empty()) {
        if (const auto removed = removeFile(second); !removed)
            answer = refused("deleted", removed.error());
    }
    for (const auto& file : {first, second}) passOver(removeFile(file), "what is still there was refused");
    return answer;
}

}  // namespace

std::string whatShareRefuses(const Paths& paths) {
    std::string refused;
    for (const NativePath* folder : {&paths.sharedDatabase, &paths.sharedSettings}) {
        if (!isFolder(*folder))
            continue;
        const std::string here = refusedIn(*folder);
        if (!here.empty())
            refused += (refused.empty() ? "" : "; ") + here;
    }
    return refused;
}

std::string shareTrialText(const std::string& refused) {
    return "What is taught on this computer cannot reach the others. " + refused +
           ". All users of the share need the right to write, rename and delete in it.";
}

}  // namespace quillon
