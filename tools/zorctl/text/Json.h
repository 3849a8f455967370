// JSON as the commands print it: one line, members in the order in which they were put in.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "tools/zorctl/text/Output.h"

using Json = nlohmann::ordered_json;

// Bytes that are no UTF-8 become replacement characters.
inline std::string JsonText(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

// A discarded value for a text that is no JSON.
inline Json ParseJson(const std::string& text) {
    return Json::parse(text, nullptr, false);
}

// A number as it is written, null for one that JSON cannot write.
inline Json JsonNumber(const std::string& text) {
    const Json number = ParseJson(text);
    return number.is_number() ? number : Json();
}

inline bool PrintJson(const Json& json) {
    return PrintData(JsonText(json) + '\n', EEscape::Json);
}
