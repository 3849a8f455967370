#include "events/EventText.h"

#include <algorithm>
#include <cstdio>

#include "System/Numbers.h"
#include "points/ShmCtrl.h"

namespace {

struct Measurement {
    const char* label;
    int point;  // above the port's base
};

constexpr Measurement kMeasurements[] = {
    {"Power_Limit", 36}, {"Output_V", 101},   {"Output_I", 102},   {"Soc", 103},     {"BMS_Need_V", 110},
    {"BMS_Need_I", 111}, {"BMS_Real_V", 113}, {"BMS_Real_I", 114}, {"Meter_V", 170}, {"Meter_I", 171},
};

}  // namespace

const char* LevelText(std::int32_t level) {
    switch (level) {
        case kWarning:
            return "[Warning]";
        case kFault:
            return "[Fault]";
        case kEmergency:
            return "[Emergency]";
        default:
            return "[Normal]";
    }
}

void WriteEventText(std::string& text, std::int32_t level, const char* name, bool rising) {
    text = LevelText(level);
    text += name;
    text += rising ? " 0 -> 1" : " 1 -> 0";
}

ErrorMessage ReadErrorMessage(CShmCTRL& shm, int base) {
    ErrorMessage message{};
    std::size_t used = 0;
    for (const Measurement& measurement : kMeasurements) {
        const LiveYc live = shm.Yc(base + measurement.point);
        const int value = TruncateToInt32(static_cast<float>(live.raw) * live.coefficient);
        const int length = std::snprintf(message.text + used, sizeof message.text - used, "%s%s:%d",
                                         used == 0 ? "" : " ", measurement.label, value);
        used = std::min(used + static_cast<std::size_t>(length), sizeof message.text - 1);
    }
    return message;
}
