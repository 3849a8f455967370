#include "tools/zorctl/Bodies.h"

#include <cjson/cJSON.h>

#include <algorithm>
#include <iterator>
#include <memory>

#include "System/Numbers.h"
#include "reports/BodyField.h"
#include "reports/PortState.h"
#include "tools/zorctl/HexText.h"

namespace {

constexpr char kPort[] = "port";
constexpr std::size_t kWidestNumber = 8;  // bytes

// `bytes` as the field means them.
DecodedField Show(const BodyField& field, const std::uint8_t* bytes) {
    std::vector<std::uint8_t> turned(field.size);
    CopyReversed(turned.data(), bytes, field.size);
    switch (field.show) {
        case EShow::Number:
            if (field.size <= kWidestNumber)
                return {field.name, std::to_string(GetLe(bytes, field.size)), true};
            break;
        case EShow::BigEndian:
            if (field.size <= kWidestNumber)
                return {field.name, std::to_string(GetLe(turned.data(), field.size)), true};
            break;
        case EShow::Reversed:
            return {field.name, HexText(turned.data(), field.size), false};
        case EShow::Fixed:
            break;
    }
    return {field.name, HexText(bytes, field.size), false};
}

// The port leads every line, wherever the body has it.
void Add(DecodedFrame& decoded, DecodedField field) {
    const auto place = field.name == kPort ? decoded.fields.begin() : decoded.fields.end();
    decoded.fields.insert(place, std::move(field));
}

// Decodes a body of fixed length by the table that its encoder uses.
template <const auto& kTable>
bool DecodeFixed(const std::uint8_t* body, std::size_t length, DecodedFrame& decoded, std::string& trouble) {
    const BodyField& last = std::prev(std::end(kTable))->at;
    const std::size_t expected = static_cast<std::size_t>(last.offset) + last.size;
    if (length != expected)
        trouble = "body of " + std::to_string(length) + " bytes, " + std::to_string(expected) + " expected";
    if (length < expected) return false;
    for (const auto& field : kTable)
        if (field.at.name != nullptr) Add(decoded, Show(field.at, body + field.at.offset));
    return true;
}

// Takes a JSON body; its port number is shown as every other message's.
bool DecodeDocument(const std::uint8_t* body, std::size_t length, DecodedFrame& decoded,
                    std::string& trouble) {
    std::string text(body, body + length);
    const std::unique_ptr<cJSON, void (*)(cJSON*)> document(cJSON_ParseWithOpts(text.c_str(), nullptr, 1),
                                                            cJSON_Delete);
    if (!cJSON_IsObject(document.get())) {
        trouble = "body is no JSON object";
        return false;
    }
    const cJSON* port = cJSON_GetObjectItemCaseSensitive(document.get(), "portNo");
    if (cJSON_IsNumber(port)) Add(decoded, {kPort, std::to_string(port->valueint), true});
    decoded.document = std::move(text);
    return true;
}

struct BodyDecoder {
    std::uint16_t code;
    bool (*decode)(const std::uint8_t* body, std::size_t length, DecodedFrame& decoded, std::string& trouble);
};

// One line per message that can be read field by field; all others are shown in hexadecimal.
constexpr BodyDecoder kDecoders[] = {
    {kCodeA1_6, DecodeDocument},
    {kCodeA1_14, DecodeFixed<kPortStateFields>},
};

}  // namespace

bool DecodeBody(std::uint16_t code, const std::uint8_t* body, std::size_t length, DecodedFrame& decoded,
                std::string& trouble) {
    const auto* found = std::find_if(std::begin(kDecoders), std::end(kDecoders),
                                     [code](const BodyDecoder& decoder) { return decoder.code == code; });
    return found != std::end(kDecoders) && found->decode(body, length, decoded, trouble);
}
