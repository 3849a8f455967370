#include "ipc/Messages.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {

constexpr MessageName kMessages[] = {
    {kCodeA1_5, "A1_5", "charging status"},   {kCodeA1_6, "A1_6", "idle status"},
    {kCodeA1_9, "A1_9", "reserved"},          {kCodeA1_11, "A1_11", "signal changes"},
    {kCodeA1_13, "A1_13", "signal snapshot"}, {kCodeA1_14, "A1_14", "port state"},
    {kCodeA1_15, "A1_15", "gun signals"},     {kCodeA1_16, "A1_16", "charging record"},
};

template <typename Fits>
const MessageName* FirstThat(const Fits& fits) {
    const auto* found = std::find_if(std::begin(kMessages), std::end(kMessages), fits);
    return found != std::end(kMessages) ? found : nullptr;
}

}  // namespace

const MessageName* FindMessage(std::uint16_t code) {
    return FirstThat([code](const MessageName& message) { return message.code == code; });
}

const MessageName* FindMessage(const char* name) {
    return FirstThat([name](const MessageName& message) { return std::strcmp(message.name, name) == 0; });
}
