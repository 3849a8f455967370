#include "tools/zorctl/messages/Bodies.h"

#include <algorithm>
#include <iterator>

#include "System/Numbers.h"
#include "history/ChargingRecord.h"
#include "reports/ChargingStatus.h"
#include "reports/IdleStatus.h"
#include "reports/PortState.h"
#include "reports/SignalBodies.h"
#include "tools/zorctl/text/HexText.h"
#include "tools/zorctl/text/Json.h"

std::uint64_t GetField(const std::uint8_t* base, const BodyField& field) {
    const std::uint8_t* at = base + field.offset;
    if (field.show != EFieldForm::BigEndian) return GetLe(at, field.size);
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < field.size; ++i) value = value << 8 | at[i];
    return value;
}

namespace {

constexpr char kPort[] = "port";
constexpr std::size_t kWidestNumber = 8;  // bytes

// What the field holds of the body, entry or area at `base`.
DecodedField Show(const BodyField& field, const std::uint8_t* base) {
    const std::uint8_t* bytes = base + field.offset;
    if (field.show == EFieldForm::Reversed) {
        std::vector<std::uint8_t> turned(field.size);
        CopyReversed(turned.data(), bytes, field.size);
        return {field.name, HexText(turned.data(), turned.size()), false};
    }
    if (field.size > kWidestNumber) return {field.name, HexText(bytes, field.size), false};
    return {field.name, std::to_string(GetField(base, field)), true};
}

// The port leads every line, wherever the body has it.
void Add(DecodedFrame& decoded, DecodedField field) {
    const auto place = field.name == kPort ? decoded.fields.begin() : decoded.fields.end();
    decoded.fields.insert(place, std::move(field));
}

std::string LengthTrouble(std::size_t length, const std::string& expected) {
    return "body of " + std::to_string(length) + " bytes, " + expected + " expected";
}

// Decodes a body of fixed length by the table that its encoder uses.
template <const auto& Table>
bool DecodeFixed(const std::uint8_t* body, std::size_t length, DecodedFrame& decoded, std::string& trouble) {
    const BodyField& last = std::prev(std::end(Table))->at;
    const std::size_t expected = static_cast<std::size_t>(last.offset) + last.size;
    if (length != expected) trouble = LengthTrouble(length, std::to_string(expected));
    if (length < expected) return false;
    for (const auto& field : Table)
        if (field.at.name != nullptr) Add(decoded, Show(field.at, body));
    return true;
}

// As DecodeFixed; a record without a body says that there is none for the time that was asked for.
bool DecodeRecord(const std::uint8_t* body, std::size_t length, DecodedFrame& decoded, std::string& trouble) {
    return length > 0 && DecodeFixed<kRecordFields>(body, length, decoded, trouble);
}

// True when `length` bytes at `body` are as many entries as its count says.
bool FitsList(const ListBodyLayout& layout, const std::uint8_t* body, std::size_t length) {
    const std::size_t around = static_cast<std::size_t>(layout.headSize) + layout.tailSize;
    if (length < around || (length - around) % layout.entrySize != 0) return false;
    return GetField(body, layout.count) == (length - around) / layout.entrySize;
}

// Decodes a head, entries of one size, and what closes the body.
template <const auto& Layout, const auto& Head, const auto& Entry>
bool DecodeList(const std::uint8_t* body, std::size_t length, DecodedFrame& decoded, std::string& trouble) {
    if (!FitsList(Layout, body, length)) {
        trouble = LengthTrouble(length, "a length that fits the count");
        return false;
    }
    for (const auto& field : Head) Add(decoded, Show(field, body));
    decoded.isList = true;
    for (std::size_t at = Layout.headSize; at + Layout.tailSize < length; at += Layout.entrySize) {
        decoded.entries.emplace_back();
        for (const auto& field : Entry) decoded.entries.back().push_back(Show(field, body + at));
    }
    return true;
}

// Takes a JSON body; its port number is shown as every other message's.
bool DecodeDocument(const std::uint8_t* body, std::size_t length, DecodedFrame& decoded,
                    std::string& trouble) {
    const std::string text(body, body + length);
    const Json document = ParseJson(text);
    if (!document.is_object()) {
        trouble = "body is no JSON object";
        return false;
    }
    const Json port = document.value("portNo", Json());
    if (port.is_number_integer()) Add(decoded, {kPort, JsonText(port), true});
    decoded.document = text;
    return true;
}

bool IsNamed(const BodyField& field, const std::string& name) {
    return field.name != nullptr && field.name == name;
}

template <const auto& kTable>
bool FixedKnows(const std::string& name) {
    return std::any_of(std::begin(kTable), std::end(kTable),
                       [&name](const auto& field) { return IsNamed(field.at, name); });
}

template <const auto& kHead, const auto& kEntry>
bool ListKnows(const std::string& name) {
    const auto isNamed = [&name](const BodyField& field) { return IsNamed(field, name); };
    return std::any_of(std::begin(kHead), std::end(kHead), isNamed) ||
           std::any_of(std::begin(kEntry), std::end(kEntry), isNamed);
}

bool DocumentKnows(const std::string& name) {
    return name == kPort || IsIdleMember(name.c_str());
}

struct BodyDecoder {
    std::uint16_t code;
    bool (*decode)(const std::uint8_t* body, std::size_t length, DecodedFrame& decoded, std::string& trouble);
    bool (*knows)(const std::string& name);
};

// One line per message; what is not here is shown in hexadecimal.
constexpr BodyDecoder kDecoders[] = {
    {kCodeA1_5, DecodeFixed<kChargingFields>, FixedKnows<kChargingFields>},
    {kCodeA1_6, DecodeDocument, DocumentKnows},
    {kCodeA1_11, DecodeList<kChangesLayout, kChangesHead, kChangesEntry>,
     ListKnows<kChangesHead, kChangesEntry>},
    {kCodeA1_13, DecodeList<kSnapshotLayout, kSnapshotHead, kSnapshotEntry>,
     ListKnows<kSnapshotHead, kSnapshotEntry>},
    {kCodeA1_14, DecodeFixed<kPortStateFields>, FixedKnows<kPortStateFields>},
    {kCodeA1_15, DecodeList<kGunLayout, kGunHead, kGunEntry>, ListKnows<kGunHead, kGunEntry>},
    {kCodeA1_16, DecodeRecord, FixedKnows<kRecordFields>},
};

const BodyDecoder* FindDecoder(std::uint16_t code) {
    const auto* found = std::find_if(std::begin(kDecoders), std::end(kDecoders),
                                     [code](const BodyDecoder& decoder) { return decoder.code == code; });
    return found != std::end(kDecoders) ? found : nullptr;
}

}  // namespace

bool DecodeBody(std::uint16_t code, const std::uint8_t* body, std::size_t length, DecodedFrame& decoded,
                std::string& trouble) {
    const BodyDecoder* decoder = FindDecoder(code);
    return decoder != nullptr && decoder->decode(body, length, decoded, trouble);
}

bool KnowsField(std::uint16_t code, const std::string& name) {
    const BodyDecoder* decoder = FindDecoder(code);
    return decoder != nullptr && decoder->knows(name);
}
