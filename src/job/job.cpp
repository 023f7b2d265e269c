// SPDX-License-Identifier: MIT
#include "job/job.h"

#include "platform/folders.h"

namespace quillon {

Job::Job(Installation& installation, const Surroundings& surroundings)
    : installation_(installation),
      surroundings_(surroundings),
      kept_(installation, surroundings.clock),
      heads_(surroundings.loop.mayStandStill() ? StandingStill::Allowed : StandingStill::Never) {
}

HeaderCheck& Job::headerTest() {
    const std::string& folder = installation_.paths().localDatabase.native();
    if (!test_ || folder != databaseFolder_) {
        databaseFolder_ = folder;
        termFiles_.emplace(NativePath(folder));
        test_.emplace(*termFiles_, messages, commonList, static_cast<HeaderCheckHost&>(*this));
    }
    return *test_;
}

Result<std::u16string_view> Job::checkFile(const ListRow& row, std::u16string_view extension, HeadReader& heads) {
    return headerTest().checkFile(row, extension, heads);
}

bool Job::mayOpen(const ListRow& row) {
    return headerTest().mayOpen(row);
}

void Job::log(const std::string& text, std::optional<std::uint32_t> colour) {
    state.log.add({surroundings_.clock.now(), text, colour});
}

void Job::rowLost(const FileError& why) {
    if (++state.counters.lostRows == 1)
        state.lossReason = why.text;
}

Result<NativePath> Job::finalListPath() const {
    const NativePath& folder = installation_.paths().localPath;
    if (folder.empty())
        return failure(ErrorKind::BadName, "no local path is set");
    return childPath(folder, state.options.jobId + ".csv");
}

}  // namespace quillon
