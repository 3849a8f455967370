// Any bytes as a message to zor_main, taken apart and shown as text and as JSON.
#include "tests/fuzz/Fuzz.h"
#include "tools/zorctl/messages/DecodedLine.h"
#include "tools/zorctl/text/HexText.h"
#include "tools/zorctl/text/PlainText.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const DecodedFrame decoded = DecodeFrame(data, size);
    const LineHead head{"09:45:00.000", 1, HexText(data, size)};
    const std::string text = Printable(TextLine(head, decoded));
    const std::string json = JsonText(AsJson(head, decoded));
    Require(Printable(text) == text && json.find('\n') == std::string::npos, "control character in a line");
    Require(ParseJson(json).is_object() && IsUtf8(json), "line that is no JSON");
    std::vector<std::uint8_t> bytes;
    Require(ParseHex(head.frame, bytes) && bytes == std::vector(data, data + size), "other bytes");
    return 0;
}
