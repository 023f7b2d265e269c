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
        : context_(context), wait_(context), folders_(source, context.state.options.part) {}

    bool wantsFiles(std::string_view /*path*/) const override { return false; }
    bool cancelled() override { return context_.stopsAtOnce(); }

    void subfolder(std::string_view path, bool canBeEntered) override {
        wait_.tellCare();
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

    // A window's Stop is looked at only where the source holds the test up.
    bool awaits(std::string_view path, const Arrives& arrives) override {
        int turns = 0;
        const auto ended = [this, &turns] {
            return context_.stopsAtOnce() || (++turns > kHeldUpTurns && context_.state.stopRequested);
        };
        return wait_.until(path, arrives, ended);
    }

private:
    static constexpr int kHeldUpTurns = 5;

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
    SourceWait wait_;
    OwnFolders folders_;
};

StandingStill standingStill(const PassContext& context) {
    return context.surroundings.loop.mayStandStill() ? StandingStill::Allowed : StandingStill::Never;
}

}  // namespace

void ListFolders(const PassContext& context, const NativePath& folder) {
    FolderTest test(context, folder);
    SourceAsker asker(standingStill(context), context.state.care);
    passOver(visitFolders(folder, test, asker), "a source that cannot be opened has no folders to count");
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
    : context_(context), wait_(context), skipList_(skipList), rawList_(rawList), dates_(context.surroundings.dates) {
}

void FolderWalk::run(const NativePath& source) {
    folders_ = OwnFolders(source, context_.state.options.part);
    SourceAsker asker(standingStill(context_), context_.state.care);
    if (!visitFolders(source, *this, asker))
        notListed(source.native());
    wait_.tellCare();
}

bool FolderWalk::awaits(std::string_view path, const Arrives& arrives) {
    return wait_.until(path, arrives, [this] { return context_.state.stopRequested; });
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

bool FolderWalk::files(std::string_view path, FolderFiles& files) {
    folderPath_ = path;
    folderText_ = toListText(path);
    context_.surroundings.loop.workingOn(path);
    wait_.tellCare();
    undescribed_ = false;
    while (!context_.state.stopRequested) {
        const FoundFile* const file = files.next();
        if (file == nullptr)
            break;
        found(*file);
    }
    if (context_.state.stopRequested)
        return false;
    if (undescribed_)
        notListed(path);
    return true;
}

void FolderWalk::found(const FoundFile& file) {
    undescribed_ = undescribed_ || file.answer.kind == FileAnswer::Kind::Refused;
    if (file.answer.kind != FileAnswer::Kind::Described)
        return;
    row_.beginFile(folderText_, file.name);
    if (skipped())
        return;
    const EntryInfo& info = file.answer.info;
    context_.state.counters.totalBytes += info.size;
    ++context_.state.counters.files;
    showSize(context_.state);
    describe(file);
    if (context_.countRow(context_.state.passes.raw, rawList_.write(row_)))
        context_.evidence.found(folderPath_, file.name, info.modified);
    context_.turn();
}

bool FolderWalk::skipped() {
    if (!context_.state.options.useSkipList || skipList_.empty() || !skipList_.matches(row_[ListColumn::Path]))
        return false;
    ++context_.state.counters.skipped;
    context_.turn();  // a tree of skipped files must not leave the window standing still
    return true;
}

void FolderWalk::describe(const FoundFile& file) {
    const EntryInfo& info = file.answer.info;
    const auto date = dates_.of(info.modified);
    const auto known = file.answer.attributes;
    const auto bits = known ? *known : attributes_.attributesOf(file.folder, file.name, info);
    if (!haveToken_) {
        token_ = listToken(bits, date);
        haveToken_ = true;
        context_.evidence.marked(token_);
    }
    row_.addFile({date, info.size, bits, token_});
}

}  // namespace quillon
