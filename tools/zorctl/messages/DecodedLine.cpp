#include "tools/zorctl/messages/DecodedLine.h"

#include <cstdio>

namespace {

std::string CodeText(std::uint16_t code) {
    char text[16];
    std::snprintf(text, sizeof text, "%u=0x%04x", code, code);
    return text;
}

Json FieldsAsJson(const std::vector<DecodedField>& fields) {
    Json json = Json::object();
    for (const DecodedField& field : fields)
        json[field.name] = field.number ? JsonNumber(field.value) : Json(field.value);
    return json;
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

Json AsJson(const LineHead& head, const DecodedFrame& decoded) {
    Json json = Json::object();
    if (!head.time.empty()) json["time"] = head.time;
    if (decoded.message != nullptr) json["message"] = decoded.message->name;
    json["code"] = decoded.code;
    if (head.sender) json["sender"] = *head.sender;
    if (!head.frame.empty()) json["frame"] = head.frame;
    if (!decoded.fields.empty()) json["fields"] = FieldsAsJson(decoded.fields);
    if (decoded.isList) {
        json["entries"] = Json::array();
        for (const auto& fields : decoded.entries) json["entries"].push_back(FieldsAsJson(fields));
    }
    if (!decoded.document.empty()) json["document"] = ParseJson(decoded.document);
    if (decoded.fields.empty() && decoded.document.empty()) json["body"] = decoded.undecoded;
    if (!decoded.trouble.empty()) json["trouble"] = decoded.trouble;
    return json;
}
