#include "tools/zorctl/Decode.h"

#include <gtest/gtest.h>

#include "tests/support/Bytes.h"
#include "tools/zorctl/DecodedLine.h"

namespace {

// 2024-03-05 09:45:00 of the tests' local time.
constexpr Arrival kArrival{{1709603100, 123999999}, 4711};

const std::string kPortStateFrame = "16 00 86 d6 00 00 51 50 49 48 47 46 45 44 02 01 00 e8 03 00 03 00 00 01";

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
        const char* line;
    } kCases[] = {
        {kPortStateFrame, "A1_14 port=2 equipment=4445464748495051 state=3"},
        // The text of a message goes on in zeros behind its frame.
        {kPortStateFrame + " 00 00 00", "A1_14 port=2 equipment=4445464748495051 state=3"},
        {DocumentFrame(R"({"sn":7,"portNo":2,"workFlag":"0003"})"),
         R"(A1_6 port=2 {"sn":7,"portNo":2,"workFlag":"0003"})"},
        {DocumentFrame("{\"a\":\"\x1b[2J\"}"), R"(A1_6 {"a":"\x1b[2J"})"},
        {DocumentFrame(R"({"portNo":2)"),
         "A1_6 body[11]=7b 22 70 6f 72 74 4e 6f 22 3a 32 (body is no JSON object)"},
        {"04 00 86 d8 00 00", "A1_16 body[0]="},
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
    EXPECT_EQ(head + R"("message":"A1_6","code":34510,"sender":4711,)"
                     R"("fields":{"port":2},"document":{"portNo":2,"sn":7}})",
              Json(DocumentFrame(R"({"portNo":2, "sn":7})")));
    EXPECT_EQ(head + R"("code":4660,"sender":4711,"body":"ab","trouble":"bytes 4 and 5 are not zero"})",
              Json("05 00 12 34 07 00 ab"));
}

}  // namespace
