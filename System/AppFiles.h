// The application directory and the files in it.
#pragma once

inline constexpr char kAppDirectory[] = "/mnt/nandflash/app/";
inline constexpr char kConfigFile[] = "zorconfig.db";
inline constexpr char kPointSettingFile[] = "zorpointsetting.db";
inline constexpr char kEventFile[] = "zorsoe.db";
inline constexpr char kHistoryFile[] = "zorycdata.db";

// Path of one of the files above, built in place: a path needs no allocation in the loop.
class CAppPath {
  public:
    explicit CAppPath(const char* file);
    const char* c_str() const { return m_text; }

  private:
    char m_text[64];
};
