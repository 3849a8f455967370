#include "tools/zorctl/Decode.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/Bytes.h"
#include "tools/zorctl/DecodedLine.h"

namespace {

// 2024-03-05 09:45:00 of the tests' local time.
constexpr Arrival kArrival{{1709603100, 123999999}, 4711};

// Equipment number and port 2, as a body begins.
const std::string kHead = "51 50 49 48 47 46 45 44 02";

const std::string kRecordFrame =
    "7d 00 86 d8 00 00 " + kHead + " 03 00 10 30 08 23 20 01 06 05 04 03 02 01 26 25 24 23 22 21 " +
    ToHex(Bytes(31)) +
    " 61 08 07 06 05 04 03 02 01 01 ff ee 1d 1c 1b 1a 19 18 17 16 15 14 13 12 11 10 04 00 00 80"
    " 90 00 30 80 00 23 20 88 77 66 55 44 33 22 11 03 00 00 00 04 00 00 00 05 00 00 00 06 00 00 00";

const std::string kPortStateFrame = "16 00 86 d6 00 00 " + kHead + " 01 00 e8 03 00 03 00 00 01";

std::string Text(const std::string& frame) {
    const Bytes bytes = Hex(frame);
    return TextLine(kArrival, DecodeFrame(bytes.data(), bytes.size()));
}

std::string Json(const std::string& frame) {
    const Bytes bytes = Hex(frame);
    return JsonLine(kArrival, DecodeFrame(bytes.data(), bytes.size()));
}

std::string DocumentFrame(const std::string& text) {
    const std::size_t count = text.size() + 4;
    const Bytes head{
        static_cast<std::uint8_t>(count), static_cast<std::uint8_t>(count >> 8), 0x86, 0xce, 0, 0};
    return ToHex(head) + ' ' + ToHex(text.data(), text.size());
}

TEST(Decode, TextLineOfEachKindOfFrame) {
    const struct {
        std::string frame;
        std::string line;
    } kCases[] = {
        {kPortStateFrame, "A1_14 port=2 equipment=4445464748495051 state=3"},
        // The text of a message goes on in zeros behind its frame.
        {kPortStateFrame + " 00 00 00", "A1_14 port=2 equipment=4445464748495051 state=3"},
        {DocumentFrame(R"({"sn":7,"portNo":2,"workFlag":"0003"})"),
         R"(A1_6 port=2 {"sn":7,"portNo":2,"workFlag":"0003"})"},
        {DocumentFrame("{\"a\":\"\x1b[2J\"}"), R"(A1_6 {"a":"\x1b[2J"})"},
        {DocumentFrame(R"({"portNo":2)"),
         "A1_6 body[11]=7b 22 70 6f 72 74 4e 6f 22 3a 32 (body is no JSON object)"},
        {"19 00 86 d5 00 00 " + kHead + " 02 00 01 00 45 23 01 07 02 00 00 00",
         "A1_13 port=2 equipment=4445464748495051 faultA=1 faultB=0 [74565=7 2=0]"},
        {"13 00 86 d3 00 00 " + kHead + " 00 01 01 45 23 07",
         "A1_11 port=2 equipment=4445464748495051 faultA=0 faultB=1 [9029=7]"},
        {"15 00 86 d7 00 00 " + kHead + " 01 00 d0 07 00 01 00 04",
         "A1_15 port=2 equipment=4445464748495051 [208=1]"},
        {"11 00 86 d5 00 00 " + kHead + " 00 00 00 00",
         "A1_13 port=2 equipment=4445464748495051 faultA=0 faultB=0 []"},
        {"13 00 86 d3 00 00 " + kHead + " 00 01 02 45 23 07",
         "A1_11 body[15]=" + kHead +
             " 00 01 02 45 23 07 (body of 15 bytes, a length that fits the count expected)"},
        {kRecordFrame,
         "A1_16 port=2 equipment=4445464748495051 time=20230830100003 status=1 yc189=010203040506 "
         "yc190=212223242526 yc191=61" +
             std::string(62, '0') +
             " meter=72623859790382856 yc177=1 tradeNumber=101112131415161718191a1b1c1deeff "
             "tradeEnergy=2147483652 freTime=20230080300090 value=1432778632 valueHigh=287454020 "
             "chargeCount=3 chargeTime=4 k1=5 k2=6"},
        {"04 00 86 d8 00 00", "A1_16 body[0]="},  // no such record
        {"06 00 12 34 00 00 ab cd", "4660=0x1234 body[2]=ab cd"},
        {"05 00 86 d6 00 00 02", "A1_14 body[1]=02 (body of 1 bytes, 18 expected)"},
        {"17 00" + kPortStateFrame.substr(5) + " 07",
         "A1_14 port=2 equipment=4445464748495051 state=3 (body of 19 bytes, 18 expected)"},
        {"07 00 12 34 00 00 ab cd", "4660=0x1234 body[2]=ab cd (count 7 claims more than the message holds)"},
        {"04 00 12 34 00 01", "4660=0x1234 body[0]= (bytes 4 and 5 are not zero)"},
        {"03 00 12 34 00", "4660=0x1234 body[0]= (count 3 is too small)"},
        {"00 00 00 00 00 00", "0=0x0000 body[0]= (count 0 is too small)"},
        {"", "0=0x0000 body[0]= (count 0 is too small, count 0 claims more than the message holds)"},
    };
    for (const auto& item : kCases) EXPECT_EQ(std::string("09:45:00.123 ") + item.line, Text(item.frame));
}

TEST(Decode, JsonLine) {
    const std::string head = R"({"time":"2024-03-05T09:45:00.123",)";
    EXPECT_EQ(head + R"("message":"A1_14","code":34518,"sender":4711,)"
                     R"("fields":{"port":2,"equipment":"4445464748495051","state":3}})",
              Json(kPortStateFrame));
    EXPECT_THAT(Json(kRecordFrame),
                testing::AllOf(testing::StartsWith(head + R"("message":"A1_16","code":34520,"sender":4711,)"
                                                          R"("fields":{"port":2,)"),
                               testing::HasSubstr(R"("time":"20230830100003","status":1,)"),
                               testing::HasSubstr(R"("meter":72623859790382856,"yc177":1,)")));
    EXPECT_EQ(head + R"("message":"A1_11","code":34515,"sender":4711,)"
                     R"("fields":{"port":2,"equipment":"4445464748495051","faultA":0,"faultB":1},)"
                     R"("entries":[{"address":9029,"value":7}]})",
              Json("13 00 86 d3 00 00 " + kHead + " 00 01 01 45 23 07"));
    EXPECT_EQ(head + R"("message":"A1_6","code":34510,"sender":4711,)"
                     R"("fields":{"port":2},"document":{"portNo":2,"sn":7}})",
              Json(DocumentFrame(R"({"portNo":2, "sn":7})")));
    EXPECT_EQ(head + R"("code":4660,"sender":4711,"body":"ab","trouble":"bytes 4 and 5 are not zero"})",
              Json("05 00 12 34 07 00 ab"));
}

// A whole body, so that a field shown twice, or past the body, is seen.
TEST(Decode, LongBody) {
    const auto lineOf = [](const char* head, int size) {
        std::string frame = head;
        for (int i = 0; i < size; ++i) frame += i % 16 == 8 ? " 02" : " 0" + std::to_string(i % 8);
        return Text(frame);
    };
    const std::string charging = lineOf("ed 00 86 cd 00 00", 233);
    EXPECT_THAT(charging,
                testing::StartsWith("09:45:00.123 A1_5 port=2 equipment=0706050403020100 connected=1 "));
    EXPECT_THAT(charging, testing::HasSubstr(" yc132=131844 yc131=460293 "));  // the two byte orders
    EXPECT_THAT(charging, testing::EndsWith(" yc143=67305985 yc144=34014725"));
}

}  // namespace
