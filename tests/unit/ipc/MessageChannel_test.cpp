// From PostMsg to the System V queue.
#include <gmock/gmock.h>
#include <unistd.h>

#include <cerrno>

#include "ipc/Frame.h"
#include "tests/support/LibcHooks.h"
#include "tests/support/TestRuntime.h"

namespace {

using MessageChannel = CStationTest;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

constexpr std::uint32_t kCode = 34518;

Bytes Pattern(std::size_t length) {
    Bytes body(length);
    for (std::size_t i = 0; i < length; ++i) body[i] = static_cast<std::uint8_t>(i + 1);
    return body;
}

TEST_F(MessageChannel, FramesOfEverySize) {
    const Bytes longBody = Pattern(300);
    const Bytes largest = Pattern(2042);
    runtime.PostMsg(kCode, nullptr, 0);
    runtime.PostMsg(0xABC00000 | kCode, longBody.data(), 300);  // only the low 16 bits of a code are sent
    runtime.PostMsg(1, largest.data(), 2042);
    Drain(4);
    const std::vector<Received> sent = ReadAll();
    ASSERT_EQ(3U, sent.size());
    EXPECT_EQ(getpid(), sent[0].sender);
    EXPECT_EQ("04 00 86 d6 00 00", ToHex(sent[0].frame));
    EXPECT_EQ("30 01 86 d6 00 00 " + ToHex(longBody), ToHex(sent[1].frame));
    EXPECT_EQ("fe 07 00 01 00 00 " + ToHex(largest), ToHex(sent[2].frame));
}

TEST_F(MessageChannel, PostedBufferStartsWithItsLength) {
    const Bytes body = Pattern(300);
    const std::string expected[] = {"00 00", "2c 01 " + ToHex(body)};
    runtime.PostMsg(kCode, nullptr, 0);
    runtime.PostMsg(kCode, body.data(), 300);
    for (const std::string& stored : expected) {
        std::uint32_t code = 0;
        void* buffer = nullptr;
        ASSERT_EQ(1, runtime.m_outboundQueue->Pop(code, buffer));
        EXPECT_EQ(stored, ToHex(buffer, stored.size() / 3 + 1));
        free(buffer);
    }
}

TEST_F(MessageChannel, OnePerDrainInPostingOrder) {
    for (const std::uint32_t code : {3U, 1U, 2U}) runtime.PostMsg(code, "x", 1);
    for (const char* frame : {"05 00 00 03 00 00 78", "05 00 00 01 00 00 78", "05 00 00 02 00 00 78"}) {
        runtime.DrainOutbound();
        EXPECT_THAT(ReadFrames(), ElementsAre(frame));
    }
    runtime.DrainOutbound();
    EXPECT_THAT(ReadFrames(), IsEmpty());
}

TEST_F(MessageChannel, TooLongABodyIsRefusedAndSaidOnce) {
    const Bytes body(2043);
    const Captured said = Capture([&] {
        runtime.PostMsg(kCode, body.data(), 2043);
        runtime.PostMsg(kCode, body.data(), UINT32_MAX);
    });
    Drain(2);
    EXPECT_EQ("zor_runtime: message 34518 not sent: body of 2043 bytes, at most 2042 fit\n", said.err);
    EXPECT_EQ("", said.out);
    EXPECT_EQ(0U, Waiting());
}

TEST_F(MessageChannel, OnlyOneCodePausesTheDrain) {
    for (const std::uint32_t code : {34512U, 34513U, 34514U}) runtime.PostMsg(code, nullptr, 0);
    Drain(1);
    EXPECT_THAT(FakeClock::Sleeps(), IsEmpty());
    Drain(2);
    EXPECT_THAT(FakeClock::Sleeps(), ElementsAre(35000));
}

TEST_F(MessageChannel, LostMessages) {
    LimitQueue(16384);
    for (int i = 0; i < 9; ++i) runtime.PostMsg(kCode, nullptr, 0);
    const std::string lost = Line("MsgSndToMain", "send failed 002!");
    EXPECT_EQ("", Capture([&] { Drain(7); }).out);
    EXPECT_EQ(lost + lost, Masked(Capture([&] { Drain(3); }).out));
    EXPECT_EQ(7U, ReadAll().size());

    runtime.PostMsg(kCode, nullptr, 0);
    FailNextQueueCall(EINTR);
    EXPECT_EQ(Line("MsgSndToMain", "sned failed!"), Masked(Capture([&] { Drain(1); }).out));
    Drain(1);
    EXPECT_EQ(0U, Waiting());
}

TEST_F(MessageChannel, WithoutAQueueEverythingIsDropped) {
    FailNextQueueCall(ENOSPC);
    std::unique_ptr<CTestRuntime> deaf;
    const Captured start = Capture([&] { deaf = std::make_unique<CTestRuntime>(); });
    EXPECT_EQ("open msg 1234 failed.\n", start.err);
    EXPECT_EQ("", start.out);
    const Captured later = Capture([&] {
        deaf->PostMsg(kCode, "x", 1);
        deaf->DrainOutbound();
        deaf->MsgRcvFromMain();
        deaf->MsgRcvFromMain();
    });
    EXPECT_EQ("", later.out);
    EXPECT_THAT(later.err, StartsWith("zor_runtime: cannot read from queue 0x1234: "));
    EXPECT_EQ(1, std::count(later.err.begin(), later.err.end(), '\n'));
    EXPECT_EQ(100U, deaf->TickPeriodMs());
    EXPECT_EQ(1800U, deaf->m_workReportTicks);
}

}  // namespace
