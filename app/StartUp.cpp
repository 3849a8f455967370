#include "app/StartUp.h"

#include <malloc.h>
#include <unistd.h>

#include <cstdio>

#include "System/AppFiles.h"
#include "System/DateTime.h"
#include "System/DiagLine.h"
#include "app/RuntimeData.h"
#include "history/HistoryDatabase.h"

namespace {

constexpr char kRule[] = "************************************************************";

// Both limits stay what they are by default. By themselves they would rise with the first large block that is
// freed. Such is the one in which each connection keeps its pages: it would come from the heap from then on,
// and wherever something small had settled in its place the process would grow by another 430 KiB, at any
// hour.
void KeepHeapLevel() {
    constexpr int kLargeBlock = 128 * 1024;
    mallopt(M_MMAP_THRESHOLD, kLargeBlock);
    mallopt(M_TRIM_THRESHOLD, kLargeBlock);
}

// Keeps a usable history database, and creates it where there is none.
void PrepareHistory(CRuntimeData& runtime) {
    const CAppPath path(kHistoryFile);
    PrintPlain("%s", path.c_str());
    if (access(path.c_str(), F_OK) != 0) {
        PrintPlain("zorycdata.db is not exist!!!");
    } else if (IsHistoryBroken(path.c_str())) {
        PrintPlain("zorycdata.db is broken, so remove zorycdata.db");
        std::remove(path.c_str());
    } else if (runtime.CheckYCDB() == 0) {
        return;
    }
    runtime.InitYcHistoryDatabase();
}

}  // namespace

void StartUp(CRuntimeData& runtime) {
    KeepHeapLevel();
    PrintPlain("%s", kRule);
    PrintPlain("*               Process Name    : zor_runtime              *");
    const int ports = runtime.GetPort(CAppPath(kConfigFile).c_str());
    PrintPlain("*               Process Version : %s  with %d port       *", ZOR_VERSION, ports);
    PrintPlain("*               Compile Date    : %s %s     *", __DATE__, __TIME__);
    PrintPlain("%s", kRule);
    runtime.SetChargerKind(kDcCharger);
    runtime.LoadRealTimeYc();
    runtime.InitPointSettingYC();
    runtime.InitPointSettingYX();
    runtime.InitSOE();
    PrepareHistory(runtime);
    // No record is taken for the hour in which the process starts.
    runtime.SetLastHour(CDateTime::Now().Hour());
}
