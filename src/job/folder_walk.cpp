// SPDX-License-Identifier: MIT
#include "job/folder_walk.h"

#include <algorithm>

#include "job/job_evidence.h"
#include "job/statistics.h"
#include "text/list_text.h"

namespace quillon {

namespace {

// More days than ten years have.
constexpr std::size_t kRememberedDays = 4096;

// A row has so many characters of a date.
constexpr std::size_t kDateCharacters = 10;

class FolderTest final : public FolderVisitor {
public:
    FolderTest(const PassContext& context, const NativePath& source)
        : context_(context), folders_(source, context.state.options.part) {}

    bool wantsFiles(std::string_view /*path*/) const override { return false; }
    bool cancelled() override { return context_.stopsAtOnce(); }

    void subfolder(std::string_view path, bool canBeEntered) override {
        context_.surroundings.loop.workingOn(path);
        if (folders_.hold(path))
            count(path, canBeEntered);
        context_.turn();
    }
    void met(std::string_view path, std::size_t files) override {
        if (folders_.hold(path))
            context_.state.passes.met += static_cast<std::int64_t>(files);
    }
    void listing() override { context_.turn(); }

private:
    void count(std::string_view path, bool canBeEntered) {
        ++context_.state.counters.folders;
        if (canBeEntered)
            return;
        ++context_.state.counters.folderErrors;
        path.remove_suffix(1);
        context_.logAbout(path, "Folder access error : " + readable(path), kLightRed);
        context_.evidence.folderFailed(path, kCannotBeEntered);
    }

    PassContext context_;
    OwnFolders folders_;
};

}  // namespace

void ListFolders(const PassContext& context, const NativePath& folder) {
    FolderTest test(context, folder);
    passOver(visitFolders(folder, test), "a source that cannot be opened has no folders to count");
}

std::u16string listToken(std::uint32_t attributes, std::u16string_view date) {
    std::string key = std::to_string(attributes) + toNative(date);
    key.erase(std::remove(key.begin(), key.end(), '/'), key.end());
    std::reverse(key.begin(), key.end());
    std::uint32_t hash = 2166136261U;
    for (const char c : key) hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
    constexpr std::u16string_view letters = u"0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    std::u16string token;
    for (int i = 0; i < 4; ++i) {
        token.push_back(letters[hash % letters.size()]);
        hash /= static_cast<std::uint32_t>(letters.size());
    }
    return token;
}

RowDates::RowDates(const DateTexts& texts) : texts_(texts), days_(kRememberedDays) {
}

std::u16string_view RowDates::of(const FileTime& time) {
    const LocalTime local = toLocalTime(time.seconds);
    const auto day = static_cast<std::int64_t>(local.year) * 366 + local.yearDay;
    Day& remembered = days_[static_cast<std::size_t>(day) % days_.size()];
    if (remembered.year != local.year || remembered.yearDay != local.yearDay) {
        LocalTime midnight = local;
        midnight.hour = midnight.minute = midnight.second = 0;
        std::u16string date = texts_.firstTen(midnight);
        remembered = {local.year, local.yearDay, date.size() < kDateCharacters, std::move(date)};
    }
    if (!remembered.runsIntoTime)
        return remembered.text;
    scratch_ = texts_.firstTen(local);
    return scratch_;
}

FolderWalk::FolderWalk(const PassContext& context, const SkipList& skipList, ListWriter& rawList)
    : context_(context), skipList_(skipList), rawList_(rawList), dates_(context.surroundings.dates) {
}

void FolderWalk::run(const NativePath& source) {
    folders_ = OwnFolders(source, context_.state.options.part);
    if (!visitFolders(source, *this))
        notListed(source.native());
}

void FolderWalk::subfolder(std::string_view path, bool canBeEntered) {
    if (!canBeEntered)
        refused_ = path;
}

// A folder that cannot be entered has its row from the folder test. Of any other the person hears here that files of it
// are missing from the list.
void FolderWalk::notListed(std::string_view path) {
    if (!folders_.hold(path))
        return;
    ++context_.state.counters.unlistedFolders;
    if (path == refused_)
        return;
    context_.evidence.folderFailed(path, kCannotBeRead);
    if (path.size() > 1 && path.back() == '/')
        path.remove_suffix(1);
    context_.logAbout(path, "Unable to read folder : " + readable(path), kLightRed);
}

bool FolderWalk::files(const Directory& folder, std::string_view path, const EntryNames& names) {
    folderPath_ = path;
    folderText_ = toListText(path);
    context_.surroundings.loop.workingOn(path);
    undescribed_ = false;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (context_.state.stopRequested)
            return false;
        found(folder, names[i]);
    }
    if (undescribed_)
        notListed(path);
    return true;
}

void FolderWalk::found(const Directory& folder, std::string_view name) {
    const auto info = folder.describe(name);
    undescribed_ = undescribed_ || (!info && info.error().kind != ErrorKind::NotFound);
    if (!info || !info->regular)
        return;  // it vanished or changed its kind since its folder was listed, or the folder does not let one ask
    row_.beginFile(folderText_, name);
    if (skipped())
        return;
    context_.state.counters.totalBytes += info->size;
    ++context_.state.counters.files;
    showSize(context_.state);
    describe(name, folder, *info);
    if (context_.countRow(context_.state.passes.raw, rawList_.write(row_)))
        context_.evidence.found(folderPath_, name, info->modified);
    context_.turn();
}

bool FolderWalk::skipped() {
    if (!context_.state.options.useSkipList || skipList_.empty() || !skipList_.matches(row_[ListColumn::Path]))
        return false;
    ++context_.state.counters.skipped;
    context_.turn();  // a tree of skipped files must not leave the window standing still
    return true;
}

void FolderWalk::describe(std::string_view name, const Directory& folder, const EntryInfo& info) {
    const auto date = dates_.of(info.modified);
    const auto bits = attributes_.attributesOf(folder, name, info);
    if (!haveToken_) {
        token_ = listToken(bits, date);
        haveToken_ = true;
        context_.evidence.marked(token_);
    }
    row_.addFile({date, info.size, bits, token_});
}

}  // namespace quillon
