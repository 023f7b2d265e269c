// SPDX-License-Identifier: MIT
#include "ahead/source_folder.h"

#include <algorithm>

#include "platform/moment.h"

namespace quillon {

namespace {

// Of a folder that is asked for ahead, so many files are described with it. Many a file system lets one look up only
// one name of a folder at a time: threads that are in different folders do not wait for each other.
constexpr std::size_t kFilesWithFolder = 64;
// A block of entries from memory takes the time of some hundred names.
constexpr std::size_t kNamesOfOneCall = 512;

void describe(const OpenFolder& folder, std::size_t first, std::size_t count, SourceTask::Tools& tools,
              std::vector<FileAnswer>& answers, bool& slow) {
    answers.reserve(count);
    for (std::size_t i = first; i < first + count; ++i) {
        FileAnswer answer = describeFile(folder, folder.files[i], *tools.care);
        if (answer.kind == FileAnswer::Kind::Described)
            answer.attributes = tools.attributes.attributesOf(folder.handle, folder.files[i], answer.info);
        slow = slow || answer.wasSlow;
        answers.push_back(answer);
    }
}

}  // namespace

FileAnswer describeFile(const OpenFolder& folder, std::string_view name, SourceCare& care) {
    const Moment start = momentNow();
    const auto info = folder.handle.describe(name);
    FileAnswer answer;
    answer.wasSlow = care.ended(start, folder.handle.handle()) > kSlowCall;
    if (info) {
        answer.kind = info->regular ? FileAnswer::Kind::Described : FileAnswer::Kind::NoFile;
        answer.info = *info;
    } else if (info.error().kind != ErrorKind::NotFound) {
        answer.kind = FileAnswer::Kind::Refused;
        care.failed(info.error());
    }
    return answer;
}

void AskedFiles::work(Tools& tools) {
    describe(*folder_, first, count, tools, answers, wasSlow);
}

void AskedFolder::work(Tools& tools) {
    open(*tools.care);
    if (folder == nullptr)
        return;
    list(*tools.care, [] {});
    const std::size_t count = std::min(folder->files.size(), itsTurn ? filesAtOnce(wasSlow) : kFilesWithFolder);
    if (!describes_ || count == 0)
        return;
    auto first = std::make_shared<AskedFiles>(folder, 0, count);
    describe(*folder, 0, count, tools, first->answers, wasSlow);
    first->isAsked = first->isAnswered = first->isAtHand = true;
    filesAsked = count;
    files.push_back(std::move(first));
}

void AskedFolder::open(SourceCare& care) {
    const Moment start = momentNow();
    auto opened = parent_ ? parent_->handle.openFolder(name) : Directory::open(NativePath(name));
    tryToEnter(opened);
    if (!opened) {
        hasGone = opened.error().kind == ErrorKind::NotFound;
        care.failed(opened.error());
    } else {
        care.ended(start, opened->handle());
        folder = std::make_shared<OpenFolder>();
        folder->handle = std::move(*opened);
    }
    parent_.reset();
    wasSlow = momentNow() - start > kSlowCall;
}

void AskedFolder::tryToEnter(const Result<Directory>& opened) {
    if (opened) {
        canBeEntered = opened->canBeEntered();
    } else if (parent_) {
        const auto inside = parent_->handle.lookUpFolder(name);
        canBeEntered = inside && inside->canBeEntered();
    }
}

void AskedFolder::list(SourceCare& care, const Pause& pause) {
    const Moment start = momentNow();
    const auto listed = folder->handle.list(folder->files, folder->folders, pause);
    const auto blocks = 1 + (folder->files.size() + folder->folders.size()) / kNamesOfOneCall;
    wasSlow = care.ended(start, folder->handle.handle()) > kSlowCall * blocks || wasSlow;
    listedToItsEnd = listed.has_value();
    if (!listed)
        care.failed(listed.error());
    filesMet = folder->files.size();
    folder->folders.sort(pause);
    if (describes_)
        folder->files.sort(pause);
    else
        folder->files.release();
}

}  // namespace quillon
