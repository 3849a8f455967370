#include "tools/zorctl/messages/DecodedLine.h"

#include <cjson/cJSON.h>

#include <cstdio>
#include <memory>

#include "tools/zorctl/text/PlainText.h"

namespace {

std::string CodeText(std::uint16_t code) {
    char text[16];
    std::snprintf(text, sizeof text, "%u=0x%04x", code, code);
    return text;
}

cJSON* JsonValue(const DecodedField& field) {
    // Numbers go in as text: 64-bit values would lose digits on the way through a double.
    return field.number ? cJSON_CreateRaw(field.value.c_str()) : cJSON_CreateString(field.value.c_str());
}

void AddFields(cJSON* object, const std::vector<DecodedField>& fields) {
    for (const DecodedField& field : fields)
        cJSON_AddItemToObject(object, field.name.c_str(), JsonValue(field));
}

void AddEntries(cJSON* object, const DecodedFrame& decoded) {
    cJSON* entries = cJSON_AddArrayToObject(object, "entries");
    for (const auto& fields : decoded.entries) {
        cJSON* entry = cJSON_CreateObject();
        AddFields(entry, fields);
        cJSON_AddItemToArray(entries, entry);
    }
}

// The entries without the names of their fields, which every line would repeat.
std::string EntriesText(const DecodedFrame& decoded) {
    std::string text;
    for (const auto& fields : decoded.entries) {
        if (!text.empty()) text += ' ';
        for (std::size_t i = 0; i < fields.size(); ++i) text += (i > 0 ? "=" : "") + fields[i].value;
    }
    return text;
}

}  // namespace

std::string TimeText(const std::timespec& time, const char* format) {
    std::tm local{};
    localtime_r(&time.tv_sec, &local);
    char text[32];
    const std::size_t length = std::strftime(text, sizeof text, format, &local);
    char fraction[8];
    std::snprintf(fraction, sizeof fraction, ".%03d", static_cast<int>(time.tv_nsec / 1'000'000 % 1000));
    return std::string(text, length) + fraction;
}

std::string TextLine(const LineHead& head, const DecodedFrame& decoded) {
    return head.time + (head.time.empty() ? "" : " ") + UntimedLine(decoded);
}

std::string UntimedLine(const DecodedFrame& decoded) {
    std::string line = decoded.message != nullptr ? decoded.message->name : CodeText(decoded.code);
    for (const DecodedField& field : decoded.fields) line += ' ' + field.name + '=' + field.value;
    if (decoded.isList) line += " [" + EntriesText(decoded) + ']';
    if (!decoded.document.empty()) line += ' ' + decoded.document;
    if (decoded.fields.empty() && decoded.document.empty())
        line += " body[" + std::to_string(decoded.bodyLength) + "]=" + decoded.undecoded;
    if (!decoded.trouble.empty()) line += " (" + decoded.trouble + ')';
    return line;
}

std::string JsonLine(const LineHead& head, const DecodedFrame& decoded) {
    const std::unique_ptr<cJSON, void (*)(cJSON*)> owner(cJSON_CreateObject(), cJSON_Delete);
    cJSON* object = owner.get();
    if (!head.time.empty()) cJSON_AddStringToObject(object, "time", head.time.c_str());
    if (decoded.message != nullptr) cJSON_AddStringToObject(object, "message", decoded.message->name);
    cJSON_AddNumberToObject(object, "code", decoded.code);
    if (head.sender) cJSON_AddNumberToObject(object, "sender", *head.sender);
    if (!head.frame.empty()) cJSON_AddStringToObject(object, "frame", head.frame.c_str());
    if (!decoded.fields.empty()) AddFields(cJSON_AddObjectToObject(object, "fields"), decoded.fields);
    if (decoded.isList) AddEntries(object, decoded);
    if (!decoded.document.empty())
        cJSON_AddItemToObject(object, "document", cJSON_Parse(decoded.document.c_str()));
    if (decoded.fields.empty() && decoded.document.empty())
        cJSON_AddStringToObject(object, "body", decoded.undecoded.c_str());
    if (!decoded.trouble.empty()) cJSON_AddStringToObject(object, "trouble", decoded.trouble.c_str());
    const std::unique_ptr<char, void (*)(void*)> text(cJSON_PrintUnformatted(object), cJSON_free);
    return text != nullptr ? text.get() : "";
}
