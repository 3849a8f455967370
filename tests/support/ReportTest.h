// What the tests of the reports share.
#pragma once

#include <string>
#include <vector>

#include "ipc/Frame.h"
#include "reports/Messages.h"
#include "tests/support/TestRuntime.h"

// Messages as their name and body: "A1_14 51 50 49 ...".
inline std::vector<std::string> Named(const std::vector<Received>& all) {
    std::vector<std::string> named;
    for (const Received& received : all) {
        const std::uint8_t* frame = received.frame.data();
        const MessageName* message = FindMessage(SplitFrame(frame, received.frame.size()).code);
        named.push_back((message != nullptr ? message->name : "?") + std::string(" ") +
                        ToHex(frame + kFrameBody, received.frame.size() - kFrameBody));
    }
    return named;
}

// A telemetry point as the last refresh left it.
inline YcPointRecord Point(int number, std::uint32_t raw, float scale = 1, std::uint32_t offset = 0) {
    YcPointRecord point{};
    point.pointNumber = number;
    point.currentRaw = raw;
    point.scale = scale;
    point.offset = offset;
    return point;
}

// A DC charger with two ports and reporting on.
class CReportTest : public CStationTest {
  protected:
    CReportTest() { runtime.m_sendflag = 1; }

    // Everything that was posted, in order.
    std::vector<std::string> Take() {
        std::vector<std::string> all;
        for (;;) {
            Drain(1);
            const std::vector<std::string> next = Named(ReadAll());
            if (next.empty()) return all;
            all.push_back(next.front());
        }
    }

    // What `run` posts.
    template <typename Run>
    std::vector<std::string> Posted(Run run) {
        Capture(run);
        return Take();
    }
};
