#include "app/StartUp.h"

#include <cstdio>

#include "System/AppFiles.h"
#include "app/RuntimeData.h"

namespace {

constexpr char kRule[] = "************************************************************";

}  // namespace

void StartUp(CRuntimeData& runtime) {
    std::puts(kRule);
    std::puts("*               Process Name    : zor_runtime              *");
    const int ports = runtime.GetPort(CAppPath(kConfigFile).c_str());
    std::printf("*               Process Version : %s  with %d port       *\n", ZOR_VERSION, ports);
    std::printf("*               Compile Date    : %s %s     *\n", __DATE__, __TIME__);
    std::puts(kRule);
    runtime.SetChargerKind(kDcCharger);
    runtime.LoadRealTimeYc();
    runtime.InitPointSettingYC();
    runtime.InitPointSettingYX();
    runtime.InitSOE();
}
