// SPDX-License-Identifier: MIT
// The command when the figures of its job do not agree.
#include <utility>

#include "programs/command_fixture.h"

namespace quillon::test {

namespace {

// Messages that do something when a certain one has come.
class ListeningMessages final : public std::stringbuf {
public:
    ListeningMessages(std::string awaited, std::function<void()> act)
        : awaited_(std::move(awaited)), act_(std::move(act)) {}

private:
    int sync() override {
        if (act_ && str().find(awaited_) != std::string::npos)
            std::exchange(act_, nullptr)();
        return std::stringbuf::sync();
    }

    std::string awaited_;
    std::function<void()> act_;
};

using JobFigures = CommandFixture;

TEST_F(JobFigures, ThatDoNotAgreeAreALineAndStatus3) {
    install();
    for (const char* name : {"source/a.abc", "source/b.abc"}) folder.write(name, "MZ" + std::string(600, '.'));
    ListeningMessages messages("Start file quality testing",
                               [&] { std::filesystem::resize_file(folder / "app/tFile.csv", 0); });
    std::ostream listening(&messages);
    const int status = runJobCommand(
        {"--job", "1234", "--source", (folder / "source").native(), "--app", (folder / "app").native(), "--json"},
        {in, out, listening});
    EXPECT_EQ(status, 3);
    const std::string gap = "2 rows of the raw list were written, 0 rows of it were read";
    const std::string line = "quillon-job: the figures of the job do not agree: " + gap + "\n";
    EXPECT_NE(messages.str().find(line), std::string::npos) << messages.str();
    EXPECT_EQ(json()["gaps"], nlohmann::json::array({gap}));
}

}  // namespace

}  // namespace quillon::test
