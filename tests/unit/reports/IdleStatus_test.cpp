#include "reports/IdleStatus.h"

#include <cJSON.h>
#include <dlfcn.h>
#include <gmock/gmock.h>

#include <cstdlib>
#include <memory>

#include "tests/support/ReportTest.h"

namespace {

std::size_t paddedLength = 0;  // of every document, blanks behind its end; 0 leaves it as it is

}  // namespace

// In cJSON's place.
extern "C" char* cJSON_PrintUnformatted(const cJSON* item) {
    static auto* const real =
        reinterpret_cast<char* (*)(const cJSON*)>(dlsym(RTLD_NEXT, "cJSON_PrintUnformatted"));
    char* text = real(item);
    if (text == nullptr || paddedLength == 0) return text;
    const std::size_t length = std::strlen(text);
    text = static_cast<char*>(std::realloc(text, paddedLength + 1));
    std::memset(text + length, ' ', paddedLength - length);
    text[paddedLength] = '\0';
    return text;
}

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class CIdleStatus : public CReportTest {
  protected:
    CIdleStatus() { runtime.m_idleReportTicks = 0; }
    void TearDown() override {
        paddedLength = 0;
        cJSON_InitHooks(nullptr);
        CReportTest::TearDown();
    }

    std::string Document(const std::list<YcPointRecord>& points, int port, std::uint32_t sequence = 0) {
        const std::unique_ptr<char, void (*)(void*)> text(BuildIdleDocument(live, points, port, sequence),
                                                          std::free);
        return text.get();
    }
    // Bodies, as text, that one call for port 1 posts.
    std::vector<std::string> Send() {
        runtime.Send_DC_A1_6({}, 1);
        Drain(1);
        std::vector<std::string> bodies;
        for (const Received& received : ReadAll())
            bodies.emplace_back(received.frame.begin() + kFrameBody, received.frame.end());
        return bodies;
    }
};
using IdleStatus = CIdleStatus;

TEST_F(IdleStatus, WholeDocument) {
    for (const int base : {0, 128}) {
        live.SetSignal(base + 134, static_cast<std::uint8_t>(1 + base));
        live.SetSignal(base + 136, 1);
        live.SetSignal(base + 137, static_cast<std::uint8_t>(3 + base));
    }
    live.SetGunState(1, 1);
    live.SetDd(0, 123456789);
    live.SetDd(32, 0x100000000);
    const std::list<YcPointRecord> points{Point(3, 1), Point(2, 7500, 0.1F), Point(130, 9), Point(131, 9),
                                          Point(3, 12345)};
    EXPECT_EQ(R"({"time":"1709603100","sn":0,"type":"dcNonWork","ver":"1.0.0.20230601",)"
              R"("equipNo":"4445464748495051","portNo":0,"connFlag":1,"gunHdrFlag":0,"lockFlag":1,)"
              R"("ctrFlag":3,"workFlag":"0003","outputV":75,"outputC":123.45,"meterVal":"12345.678900"})",
              Document(points, 0));
    EXPECT_EQ(R"({"time":"1709603100","sn":65535,"type":"dcNonWork","ver":"1.0.0.20230601",)"
              R"("equipNo":"4445464748495051","portNo":2,"connFlag":129,"gunHdrFlag":0,"lockFlag":1,)"
              R"("ctrFlag":131,"workFlag":"0002","outputV":75,"outputC":123.45,"meterVal":"429496.729600"})",
              Document(points, 2, 65535));
}

TEST_F(IdleStatus, Numbers) {
    const struct {
        std::list<YcPointRecord> points;
        std::uint64_t counter;
        const char* tail;
    } kCases[] = {
        {{}, 0, R"("outputV":0,"outputC":0,"meterVal":"0.000000"})"},
        {{Point(2, 3), Point(3, 1)}, 1, R"("outputV":0.3,"outputC":0.01,"meterVal":"0.000100"})"},
        {{Point(2, 65536 + 7), Point(3, 10, -1, 7)},
         12345,
         R"("outputV":0.7,"outputC":0.07,"meterVal":"1.234500"})"},
        {{Point(2, 65535), Point(3, 1, 0.999F, 65534)},
         UINT64_MAX,
         R"("outputV":6553.5,"outputC":655.34,"meterVal":"1844674407370955.250000"})"},
    };
    for (const auto& c : kCases) {
        live.SetDd(0, c.counter);
        EXPECT_THAT(Document(c.points, 1), testing::EndsWith(c.tail));
    }
}

TEST_F(IdleStatus, WorkFlag) {
    const struct {
        int signal;  // set; negative for none
        std::uint8_t gun;
        const char* flag;
    } kCases[] = {
        {-1, 0, "0002"}, {-1, 1, "0003"}, {-1, 2, "0005"}, {-1, 3, "0006"},  {-1, 4, "0001"}, {-1, 5, "0000"},
        {-1, 9, "0000"}, {0, 9, "0001"},  {20, 0, "0001"}, {227, 2, "0001"}, {99, 2, "0005"},
    };
    for (const auto& c : kCases) {
        live.SetGunState(2, c.gun);
        if (c.signal >= 0) live.SetSignal(c.signal, 1);
        EXPECT_THAT(Document({}, 2), HasSubstr("\"workFlag\":\"" + std::string(c.flag) + "\"")) << c.signal;
        if (c.signal >= 0) live.SetSignal(c.signal, 0);
    }
}

TEST_F(IdleStatus, SequenceIsSharedAndWraps) {
    runtime.m_idleSequence = 65535;
    for (const char* sn : {"65535", "0", "1"})
        EXPECT_THAT(Send(), ElementsAre(StartsWith(R"({"time":"1709603100","sn":)" + std::string(sn) + ',')));
    runtime.Send_DC_A1_6({}, 2);
    EXPECT_EQ(3U, runtime.m_idleSequence);
}

TEST_F(IdleStatus, OnlyWhatFitsIsPosted) {
    EXPECT_EQ("", Capture([this] { EXPECT_EQ(1U, Send().size()); }).out);  // no dump
    paddedLength = 512;
    EXPECT_THAT(Send(), ElementsAre(testing::SizeIs(512)));
    paddedLength = 513;
    EXPECT_THAT(Send(), IsEmpty());
    paddedLength = 0;
    EXPECT_THAT(Send(), ElementsAre(HasSubstr(R"("sn":3,)")));
}

int allocationsUntilFailure = 0;
int blocksInUse = 0;

TEST_F(IdleStatus, WithoutMemoryNothingIsPosted) {
    cJSON_Hooks hooks{[](std::size_t size) -> void* {
                          if (allocationsUntilFailure-- == 0) return nullptr;
                          ++blocksInUse;
                          return std::malloc(size);
                      },
                      [](void* block) {
                          if (block != nullptr) --blocksInUse;
                          std::free(block);
                      }};
    cJSON_InitHooks(&hooks);
    std::uint32_t failures = 0;
    for (;; ++failures) {
        allocationsUntilFailure = static_cast<int>(failures);
        blocksInUse = 0;
        const std::vector<std::string> sent = Send();
        EXPECT_EQ(failures + 1, runtime.m_idleSequence);
        if (!sent.empty() || failures == 1000) break;
        EXPECT_EQ(0, blocksInUse) << failures;
    }
    EXPECT_LT(14U, failures);  // one for each member at least
    EXPECT_GT(1000U, failures);
}

}  // namespace
