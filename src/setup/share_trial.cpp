// SPDX-License-Identifier: MIT
#include "setup/share_trial.h"

#include <functional>
#include <utility>

#include "platform/folders.h"
#include "platform/whole_file.h"
#include "text/list_text.h"

namespace quillon {

namespace {

Result<void> makeFile(const NativePath& path) {
    return File::create(path).and_then(
        [](File file) { return file.write("trial").and_then([&] { return file.close(); }); });
}

// What is gone was moved or removed by another process of this computer that tries at the same moment.
bool refuses(const Result<void>& done) {
    return !done && done.error().kind != ErrorKind::NotFound;
}

// As a save does it: one file over another. The names are always the same, so that a share that lets nothing be deleted
// does not fill up.
std::string refusedIn(const NativePath& folder) {
    const NativePath first = folder / (ownTemporaryPrefix() + "trial");
    const NativePath second = folder / (ownTemporaryPrefix() + "trial-target");
    const std::pair<const char*, std::function<Result<void>()>> steps[] = {
        {"made", [&] { return makeFile(first); }},
        {"made", [&] { return makeFile(second); }},
        {"replaced", [&] { return renameFile(first, second); }},
        {"deleted", [&] { return removeFile(second); }}};
    std::string answer;
    for (const auto& [what, step] : steps) {
        const auto done = step();
        if (!refuses(done))
            continue;
        answer = readable(folder.native()) + ": no file can be " + what + " there (" + done.error().cause + ")";
        break;
    }
    if (!answer.empty()) {
        for (const auto& file : {first, second}) passOver(removeFile(file), "what is still there was refused");
    }
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
