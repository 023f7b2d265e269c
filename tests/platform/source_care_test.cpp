// SPDX-License-Identifier: MIT
// Which answers of a source make a job ask it for one thing at a time.
#include "platform/source_care.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include <gtest/gtest.h>

#include "platform/system_error.h"
#include "support/temp_folder.h"

namespace quillon::test {

namespace {

using Reason = SourceCare::Reason;

// A file or folder of a volume, held open.
class Held {
public:
    explicit Held(const std::filesystem::path& path) : descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {}
    ~Held() { ::close(descriptor); }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    const int descriptor;
};

Moment ago(std::chrono::milliseconds time) {
    return momentNow() - time;
}

TEST(SourceCare, AReadErrorIsAReasonAndNoOtherFailureIs) {
    SourceCare care;
    for (const int number : {ENOENT, EACCES, ENOTCONN, ENAMETOOLONG}) care.failed(systemError("file", number));
    EXPECT_FALSE(care.oneAtATime());
    care.failed(systemError("file", EIO));
    EXPECT_TRUE(care.oneAtATime());
    EXPECT_EQ(care.reason(), Reason::ReadError);
}

TEST(SourceCare, TheFirstReasonStays) {
    SourceCare care(Reason::Asked);
    care.readFailed();
    EXPECT_EQ(care.reason(), Reason::Asked);
}

TEST(SourceCare, AnAnswerOfADiskAboveTwoSecondsIsAReason) {
    const TempFolder folder;
    const Held held(folder.path());
    if (!isOnDisk(held.descriptor))
        GTEST_SKIP() << "temporary folders lie on no disk here";
    SourceCare care;
    EXPECT_LT(care.ended(ago(std::chrono::milliseconds(1000)), held.descriptor), SourceCare::kPatience);
    EXPECT_FALSE(care.oneAtATime());
    EXPECT_GE(care.ended(ago(std::chrono::milliseconds(2000)), held.descriptor), SourceCare::kPatience);
    EXPECT_EQ(care.reason(), Reason::SlowCall);
}

// A server that hangs wears nothing out; /proc stands for one, as it lies on no disk.
TEST(SourceCare, AnAnswerOfAnotherVolumeMayTakeItsTime) {
    const Held held("/proc/version");
    ASSERT_FALSE(isOnDisk(held.descriptor));
    SourceCare care;
    EXPECT_GE(care.ended(ago(std::chrono::minutes(1)), held.descriptor), SourceCare::kPatience);
    EXPECT_FALSE(care.oneAtATime());
}

}  // namespace

}  // namespace quillon::test
