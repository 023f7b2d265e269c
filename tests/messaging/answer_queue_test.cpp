// SPDX-License-Identifier: MIT
// Answers to alerts: one each, in time, and none that another computer's alerts could cost.
#include "messaging/answer_queue.h"

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

#include <fmt/format.h>
#include <gmock/gmock.h>

namespace quillon {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;

const HostAddress kSomewhere = *numericAddress("10.0.0.7");

struct Sent {
    std::mutex mutex;
    std::vector<HostAddress> to;
    std::vector<std::string> bytes;

    AnswerQueue::Send send() {
        return [this](const HostAddress& address, std::string_view text) -> Result<void> {
            const std::lock_guard lock(mutex);
            to.push_back(address);
            bytes.emplace_back(text);
            return {};
        };
    }
};

TEST(AnswerQueue, SendsOneAnswerForEachToTheAddressOfTheName) {
    Sent sent;
    AnswerQueue queue("answer", {.ask = [](const std::string&) -> Result<HostAddress> { return kSomewhere; }},
                      sent.send());
    queue.answer("LAB7");
    queue.answer("LAB7");
    ASSERT_TRUE(queue.finish(milliseconds(5000)));
    EXPECT_THAT(sent.to, ElementsAre(kSomewhere, kSomewhere));
    EXPECT_THAT(sent.bytes, ElementsAre("answer", "answer"));
    EXPECT_EQ(queue.counts().sent, 2U);
}

TEST(AnswerQueue, AnUnknownNameGetsNoAnswer) {
    Sent sent;
    AnswerQueue queue(
        "answer", {.ask = [](const std::string&) -> Result<HostAddress> { return failure(ErrorKind::NotFound, ""); }},
        sent.send());
    queue.answer("LAB7");
    ASSERT_TRUE(queue.finish(milliseconds(5000)));
    EXPECT_TRUE(sent.to.empty());
    EXPECT_EQ(queue.counts().failed, 1U);
}

// The look-ups that hang keep the queue from its end.
void waitForAnswers(AnswerQueue& queue, std::size_t sent) {
    for (int looks = 0; queue.counts().sent < sent && looks < 60'000; ++looks)
        EXPECT_FALSE(queue.finish(milliseconds(1)));
    EXPECT_EQ(queue.counts().sent, sent);
}

// Names that begin with "dead" are looked up until the gate opens.
struct Gate {
    std::mutex mutex;
    std::condition_variable changed;
    bool open = false;

    HostResolver resolver() {
        return [this](const std::string& name) -> Result<HostAddress> {
            std::unique_lock lock(mutex);
            if (name.substr(0, 4) == "dead")
                changed.wait(lock, [this] { return open; });
            return kSomewhere;
        };
    }
    void release() {
        const std::lock_guard lock(mutex);
        open = true;
        changed.notify_all();
    }
};

TEST(AnswerQueue, ADeadNameServerHoldsUpNoOtherAnswer) {
    Sent sent;
    Gate gate;
    AnswerQueue queue("answer", {.ask = gate.resolver()}, sent.send());
    for (int i = 0; i < 5; ++i) queue.answer("dead");
    queue.answer("LAB7");
    waitForAnswers(queue, 1);
    gate.release();
    EXPECT_TRUE(queue.finish(milliseconds(5000)));
    EXPECT_EQ(queue.counts().sent, 6U);
}

TEST(AnswerQueue, AnAnswerThatComesTooLateIsNotSent) {
    Sent sent;
    Gate gate;
    AnswerQueue queue("answer", {.ask = gate.resolver()}, sent.send(), milliseconds(50));
    queue.answer("dead");
    EXPECT_FALSE(queue.finish(milliseconds(100)));
    gate.release();
    EXPECT_TRUE(queue.finish(milliseconds(5000)));
    EXPECT_TRUE(sent.to.empty());
    EXPECT_EQ(queue.counts().dropped, 1U);
}

TEST(AnswerQueue, AFloodIsBounded) {
    Sent sent;
    Gate gate;
    AnswerQueue queue("answer", {.ask = gate.resolver()}, sent.send());
    for (int i = 0; i < 5000; ++i) queue.answer("dead");
    EXPECT_GE(queue.counts().dropped, 3900U);
    gate.release();
    EXPECT_TRUE(queue.finish(milliseconds(10000)));
}

TEST(AnswerQueue, ForgedNamesOfManySourcesCostNoHonestAnswer) {
    Sent sent;
    Gate gate;
    AnswerQueue queue("answer", {.ask = gate.resolver()}, sent.send());
    for (int i = 0; i < 30; ++i) queue.answer(fmt::format("dead{}", i), *numericAddress(fmt::format("10.1.0.{}", i)));
    queue.answer("LAB7", kSomewhere);
    SCOPED_TRACE("thirty seconds of one forged alert a second");
    waitForAnswers(queue, 1);
    gate.release();
    EXPECT_TRUE(queue.finish(milliseconds(5000)));
}

TEST(AnswerQueue, AFloodOfOneSourceCostsNoAnswerToAnother) {
    Sent sent;
    Gate gate;
    AnswerQueue queue("answer", {.ask = gate.resolver()}, sent.send());
    const HostAddress forger = *numericAddress("10.1.0.1");
    for (int i = 0; i < 3000; ++i) queue.answer(fmt::format("dead{}", i), forger);
    queue.answer("LAB7", kSomewhere);
    waitForAnswers(queue, 1);
    EXPECT_GE(queue.counts().dropped, 2800U);
    gate.release();
    EXPECT_TRUE(queue.finish(milliseconds(5000)));
}

// Every look-up of the queue hangs; what was found before, and what needs no look-up, is answered.
TEST(AnswerQueue, WhatWasFoundOrIsKnownWaitsForNoLookUp) {
    Sent sent;
    Gate gate;
    std::atomic<int> asked = 0;
    const auto ask = [&](const std::string& name) {
        ++asked;
        return gate.resolver()(name);
    };
    const auto known = [](const std::string& name) -> Result<HostAddress> {
        if (name == "HOSTS")
            return kSomewhere;
        return failure(ErrorKind::NotFound, name);
    };
    AnswerQueue queue("answer", {ask, known}, sent.send());
    queue.answer("LAB7", kSomewhere);
    ASSERT_TRUE(queue.finish(milliseconds(5000)));
    for (int i = 0; i < 200; ++i) queue.answer(fmt::format("dead{}", i), *numericAddress(fmt::format("10.1.0.{}", i)));
    queue.answer("LAB7", kSomewhere);
    queue.answer("HOSTS", kSomewhere);
    waitForAnswers(queue, 3);
    EXPECT_LE(asked, 65) << "and a flood gets no more threads than that";
    gate.release();
    EXPECT_TRUE(queue.finish(milliseconds(10000)));
}

TEST(AnswerQueue, ANameIsLookedUpOnceHoweverManyWaitForIt) {
    Sent sent;
    Gate gate;
    std::atomic<int> asked = 0;
    const auto ask = [&](const std::string& name) {
        ++asked;
        return gate.resolver()(name);
    };
    AnswerQueue queue("answer", {.ask = ask}, sent.send());
    for (int i = 0; i < 20; ++i) queue.answer("dead", kSomewhere);
    EXPECT_FALSE(queue.finish(milliseconds(50)));
    gate.release();
    ASSERT_TRUE(queue.finish(milliseconds(5000)));
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(queue.counts().sent, 20U);
}

TEST(AnswerQueue, EndsWithoutWaitingForALookUpAndSendsNothingAfterwards) {
    auto sent = std::make_shared<Sent>();
    auto gate = std::make_shared<Gate>();
    auto looked = std::make_shared<std::atomic<bool>>(false);
    {
        AnswerQueue queue(
            "answer",
            {.ask =
                 [gate, looked](const std::string& name) {
                     auto address = gate->resolver()(name);
                     *looked = true;
                     return address;
                 }},
            [sent](const HostAddress& address, std::string_view bytes) { return sent->send()(address, bytes); });
        queue.answer("dead");
        EXPECT_FALSE(queue.finish(milliseconds(50)));
    }
    gate->release();
    while (!*looked) std::this_thread::yield();
    const std::lock_guard lock(sent->mutex);
    EXPECT_TRUE(sent->to.empty());
}

}  // namespace
}  // namespace quillon
