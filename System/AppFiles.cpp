#include "System/AppFiles.h"

#include <cstdio>

CAppPath::CAppPath(const char* file) {
    std::snprintf(m_text, sizeof m_text, "%s%s", kAppDirectory, file);
}
