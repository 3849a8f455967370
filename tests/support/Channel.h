// zor_main's end of the System V queue.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tests/support/Bytes.h"

struct Received {
    std::int32_t sender;  // process id
    Bytes frame;          // as long as its count says
};

// Takes every waiting message for zor_main. A test failure is added for a message of another size than the
// peer expects, or with anything but zeros behind the frame.
std::vector<Received> ReadAll();

// A message as its name and body: "A1_14 51 50 49 ...", A1_6 as its text.
std::string Named(std::uint32_t code, const std::uint8_t* body, std::size_t length);
// Takes every waiting message, each as Named shows it.
std::vector<std::string> ReadNamed();

// Queues `frame` (at most 2048 bytes, the rest of the message is zeros) for the process. False when the queue
// is full.
bool SendFrame(const Bytes& frame);
// Queues a message of exactly `text`, process id included.
bool SendText(const Bytes& text);

// A report-settings frame. Intervals in seconds, `longInterval` in minutes.
struct Settings {
    std::uint16_t enable = 1000;
    std::uint16_t a1_3 = 5;
    std::uint16_t a1_4 = 5;
    std::uint16_t a1_5 = 60;
    std::uint16_t a1_6 = 60;
    std::uint16_t snapshot = 60;
    std::uint16_t longInterval = 60;
};
Bytes SettingsFrame(const Settings& settings = {});

// How many messages of any type wait, and the queue's limit in bytes.
unsigned long Waiting();
void LimitQueue(unsigned long bytes);
