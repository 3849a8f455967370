#include "tests/support/Channel.h"

#include <gtest/gtest.h>
#include <sys/msg.h>

#include <algorithm>
#include <cstring>

#include "System/Numbers.h"
#include "ipc/Frame.h"
#include "ipc/SettingsCommand.h"

namespace {

int Queue() {
    return msgget(kQueueKey, IPC_CREAT | kQueuePermissions);
}

}  // namespace

std::vector<Received> ReadAll() {
    std::vector<Received> all;
    SysVMessage message{};
    ssize_t size = 0;
    while ((size = msgrcv(Queue(), &message, sizeof message.text, kTypeToMain, IPC_NOWAIT)) >= 0) {
        EXPECT_EQ(2052, size);
        Received received{};
        std::memcpy(&received.sender, message.text, sizeof received.sender);
        const auto length =
            static_cast<std::size_t>(std::min<std::uint64_t>(GetLe(message.Frame(), 2) + 2, kFrameCapacity));
        received.frame.assign(message.Frame(), message.Frame() + length);
        EXPECT_TRUE(std::all_of(message.Frame() + length, std::end(message.text),
                                [](std::uint8_t byte) { return byte == 0; }));
        all.push_back(std::move(received));
    }
    return all;
}

std::vector<std::string> ReadFrames() {
    std::vector<std::string> frames;
    for (const Received& received : ReadAll()) frames.push_back(ToHex(received.frame));
    return frames;
}

bool SendText(const Bytes& text) {
    SysVMessage message{};
    message.type = kTypeFromMain;
    std::copy(text.begin(), text.end(), message.text);
    return msgsnd(Queue(), &message, text.size(), IPC_NOWAIT) == 0;
}

bool SendFrame(const Bytes& frame) {
    Bytes text(kMessageTextSize);
    std::copy(frame.begin(), frame.end(), text.begin() + kProcessIdSize);
    return SendText(text);
}

Bytes SettingsFrame(const Settings& settings) {
    Bytes frame = Hex("12 00 85 26");
    frame.resize(kSettingsFrameLength);
    const std::uint16_t values[] = {settings.enable,
                                    settings.a1_3,
                                    settings.a1_4,
                                    settings.a1_5,
                                    settings.a1_6,
                                    settings.snapshot,
                                    0,
                                    settings.longInterval};
    std::uint8_t* at = &frame[4];
    for (const std::uint16_t value : values) {
        PutLe(at, 2, value);
        at += 2;
    }
    return frame;
}

unsigned long Waiting() {
    msqid_ds state{};
    return msgctl(Queue(), IPC_STAT, &state) == 0 ? state.msg_qnum : 0;
}

void LimitQueue(unsigned long bytes) {
    msqid_ds state{};
    ASSERT_EQ(0, msgctl(Queue(), IPC_STAT, &state));
    state.msg_qbytes = bytes;
    ASSERT_EQ(0, msgctl(Queue(), IPC_SET, &state));
}
