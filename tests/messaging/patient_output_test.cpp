// SPDX-License-Identifier: MIT
// Output that nobody may read: whoever writes never waits, and what was lost is counted.
#include "messaging/patient_output.h"

#include <future>
#include <sstream>
#include <streambuf>

#include <gtest/gtest.h>

namespace quillon {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kLong{20000};

// A pipe that nobody empties until the gate opens.
class HeldBuffer final : public std::streambuf {
public:
    explicit HeldBuffer(std::shared_future<void> gate) : gate_(std::move(gate)) {}
    std::string written;

protected:
    int_type overflow(int_type c) override {
        const char letter = traits_type::to_char_type(c);
        return xsputn(&letter, 1) == 1 ? c : traits_type::eof();
    }
    std::streamsize xsputn(const char* text, std::streamsize size) override {
        gate_.wait();
        written.append(text, static_cast<std::size_t>(size));
        return size;
    }

private:
    std::shared_future<void> gate_;
};

TEST(PatientOutput, WritesEverythingInOrder) {
    std::ostringstream stream;
    PatientOutput output(stream);
    std::string expected;
    for (int i = 0; i < 100; ++i) {
        output.write(std::to_string(i) + "\n");
        expected += std::to_string(i) + "\n";
    }
    ASSERT_TRUE(output.finish(kLong));
    EXPECT_EQ(stream.str(), expected);
    EXPECT_EQ(output.lost(), 0U);
}

TEST(PatientOutput, AReaderThatDoesNotReadHoldsNobodyAndLosesWhatDoesNotFit) {
    std::promise<void> gate;
    HeldBuffer buffer(gate.get_future().share());
    std::ostream stream(&buffer);
    PatientOutput output(stream);
    const std::string text(PatientOutput::kMostWaiting / 8, 'x');
    for (int i = 0; i < 12; ++i) output.write(text);
    EXPECT_FALSE(output.finish(milliseconds(20)));
    EXPECT_EQ(output.lost(), 4U);
    gate.set_value();
    ASSERT_TRUE(output.finish(kLong));
    EXPECT_EQ(buffer.written.size(), PatientOutput::kMostWaiting);
}

TEST(PatientOutput, AStreamThatTakesNothingLosesTextsAndNothingElse) {
    class Broken final : public std::streambuf {};
    Broken buffer;
    std::ostream stream(&buffer);
    PatientOutput output(stream);
    output.write("one");
    output.write("two");
    ASSERT_TRUE(output.finish(kLong));
    EXPECT_EQ(output.lost(), 2U);
}

}  // namespace
}  // namespace quillon
