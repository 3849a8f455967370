#include "tools/zorctl/messages/SettingsFrame.h"

#include "System/Numbers.h"
#include "ipc/SettingsCommand.h"

Frame BuildSettingsFrame(const ReportSettings& settings) {
    std::uint8_t data[kSettingsFrameLength - kFrameData] = {};
    const auto put = [&data](std::size_t frameOffset, std::uint16_t value) {
        PutLe(data + (frameOffset - kFrameData), sizeof value, value);
    };
    put(kSettingsEnable, settings.on ? kEnableReporting : 0);
    put(kSettingsA1_3, settings.work);
    put(kSettingsA1_4, settings.idle);
    put(kSettingsA1_5, settings.work);
    put(kSettingsA1_6, settings.idle);
    put(kSettingsSnapshot, settings.snapshot);
    put(kSettingsLongInterval, settings.longInterval);
    return BuildInboundFrame(kCommandSettings, data, sizeof data);
}
