#include "tests/support/Channel.h"

#include <gtest/gtest.h>
#include <sys/msg.h>

#include <algorithm>
#include <cstring>

#include "System/Numbers.h"
#include "ipc/Frame.h"
#include "ipc/Messages.h"

static int Queue() {
    return msgget(kQueueKey, IPC_CREAT | kQueuePermissions);
}

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

std::string Named(std::uint32_t code, const std::uint8_t* body, std::size_t length) {
    const MessageName* message = FindMessage(static_cast<std::uint16_t>(code));
    return (message != nullptr ? message->name : "?") + std::string(" ") +
           (code == kCodeA1_6 ? std::string(body, body + length) : ToHex(body, length));
}

std::vector<std::string> ReadNamed() {
    std::vector<std::string> all;
    for (const auto& [sender, frame] : ReadAll())
        all.push_back(Named(SplitFrame(frame.data(), frame.size()).code, &frame[kFrameBody],
                            frame.size() - kFrameBody));
    return all;
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

Bytes SettingsFrame(const Settings& s) {
    Bytes frame = Hex("12 00 85 26");
    for (const int value : {+s.enable, +s.a1_3, +s.a1_4, +s.a1_5, +s.a1_6, +s.snapshot, 0, +s.longInterval}) {
        frame.push_back(static_cast<std::uint8_t>(value));
        frame.push_back(static_cast<std::uint8_t>(value >> 8));
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
