#include "tools/zorctl/StationReading.h"

#include <filesystem>

#include "System/Sqlite.h"
#include "tools/zorctl/Commands.h"

bool OpenToRead(CSqliteDb& database, const std::string& directory, const char* file) {
    const std::string path = (std::filesystem::path(directory) / file).string();
    std::error_code error;
    if (!std::filesystem::exists(path, error)) {
        Complain("%s: %s", path.c_str(), error ? error.message().c_str() : "not there");
        return false;
    }
    if (database.OpenForReading(path.c_str(), kBusyAtStartUpMs) == SQLITE_OK) return true;
    Complain("%s: cannot be opened", path.c_str());
    return false;
}
