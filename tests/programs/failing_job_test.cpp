// SPDX-License-Identifier: MIT
// A whole job with its copies on a disk of which one call fails, whichever it is: every row and every copy that stands
// is whole, and nothing is missing without a word.
#include "job/job_driver.h"
#include "platform/folders.h"
#include "programs/save_table.h"
#include "support/list_bytes.h"

namespace quillon {
namespace {

using test::FailingFiles;
using test::Fault;
using test::Place;

// What a job said of itself.
struct Told {
    bool complete = false;
    std::int32_t lostRows = 0;
    std::int32_t copyErrors = 0;
    bool boxes = false;
    std::string call;  // that was disturbed; empty when the job had none so late
};

class FailingJob : public testing::Test {
protected:
    FailingJob() {
        for (int i = 0; i < 6; ++i) {
            const std::string name = "source/" + std::to_string(i % 2) + "/" + std::to_string(i) + ".jpg";
            files_[(temp / name).native()] = "\xFF\xD8\xFF" + std::string(i == 5 ? 300'000 : 20'000, 'j');
            temp.write(name, files_[(temp / name).native()]);
        }
    }

    [[nodiscard]] Told run(int n, const Fault& fault) const {
        for (const char* folder : {"app", "local", "target"}) std::filesystem::remove_all(temp / folder);
        for (const char* folder : {"app", "local/Settings", "local/Database", "target"})
            std::filesystem::create_directories(temp / folder);
        temp.write("local/Database/jpg.dat", "1,FFD8FF,H\r\n");
        temp.write("local/7.csv", kOldList);
        Told told;
        FailingFiles disk;
        disk.failAt(n, fault);
        Place place(temp.path(), false);
        Job job(place.installation, place.surroundings);
        job.messages = ReportMessages::fallback();
        job.state.options.jobId = "7";
        job.state.options.source = temp / "source";
        job.state.options.target = temp / "target";
        job.state.options.copy = true;
        job.state.options.checkFileQuality = true;
        job.state.options.confirmedList = temp / "local/7.csv";
        JobHost screen;
        told.complete = JobDriver(job, screen, nullptr).run() == JobEnd::Complete;
        told.lostRows = job.state.counters.lostRows;
        told.copyErrors = job.state.counters.copyErrors;
        told.boxes = !place.dialogs.titles.empty();
        told.call = disk.metCall();
        return told;
    }

    // The paths of the final list's rows, each of which is whole.
    [[nodiscard]] std::size_t wholeRows() const {
        const auto bytes = readWholeFile(temp / "local/7.csv").value_or("");
        if (bytes == kOldList)
            return 0;
        const std::u16string text = test::utf16Text(bytes);
        std::size_t rows = 0;
        for (const auto& [path, content] : files_) {
            const auto at = text.find(NativePath(path).u16string() + u",");
            rows += at == text.npos ? 0 : 1;
        }
        EXPECT_EQ(std::ranges::count(text, u'\n'), static_cast<std::ptrdiff_t>(rows));
        EXPECT_EQ(std::ranges::count(text, u','), static_cast<std::ptrdiff_t>(4 * rows));
        EXPECT_TRUE(text.empty() || text.ends_with(u"\r\n"));
        return rows;
    }

    // Copies that stand, each of which is whole.
    [[nodiscard]] std::size_t wholeCopies() const {
        std::size_t copies = 0;
        for (const auto& [path, content] : files_) {
            const auto copy = readWholeFile((temp / "target").native() + path);
            EXPECT_EQ(copy.value_or(content), content) << path;
            copies += copy ? 1 : 0;
        }
        return copies;
    }

    [[nodiscard]] bool oldListStands() const {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(temp / "local")) {
            if (entry.is_regular_file() && readWholeFile(entry.path()).value_or("") == kOldList)
                return true;
        }
        return false;
    }

    [[nodiscard]] std::size_t temporaries() const {
        std::size_t found = 0;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(temp.path()))
            found += isTemporaryName(entry.path().filename().native()) ? 1 : 0;
        return found;
    }

    void expectNothingLostWithoutAWord(const Told& told, const Fault& fault) const {
        const std::size_t rows = wholeRows();
        const std::size_t copies = wholeCopies();
        EXPECT_TRUE(oldListStands()) << "the list of the job before";
        const bool saysAll = told.complete && told.lostRows == 0 && !told.boxes;
        EXPECT_TRUE(!saysAll || rows == files_.size()) << rows << " rows";
        EXPECT_TRUE(!saysAll || copies + static_cast<std::size_t>(told.copyErrors) >= files_.size()) << copies;
        EXPECT_TRUE(fault.lasting || told.call == "unlink" || temporaries() == 0);
    }

    static constexpr const char* kOldList = "rows of an older job";
    test::TempFolder temp;
    std::map<std::string, std::string> files_;
};

TEST_F(FailingJob, LosesNothingWithoutAWord) {
    EXPECT_EQ(run(0, {}).copyErrors, 0);
    EXPECT_EQ(wholeRows(), files_.size());
    EXPECT_EQ(wholeCopies(), files_.size());
    for (const Fault fault : {Fault{ENOSPC}, {ENOSPC, false, true}, {EIO}, {EIO, true}}) {
        Told told{.call = "first"};
        for (int n = 1; !told.call.empty(); ++n) {
            ASSERT_LT(n, 1000);
            told = run(n, fault);
            SCOPED_TRACE(told.call + ", call " + std::to_string(n) + (fault.lasting ? " and later" : ""));
            expectNothingLostWithoutAWord(told, fault);
        }
    }
}

}  // namespace
}  // namespace quillon
