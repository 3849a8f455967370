# What a unit brings and a developer's machine does not: the shared-memory library, SQLite with keying, the key.
# Each has a stand-in here; a cache variable points the build at the unit's own.

include(CheckCXXSourceCompiles)
include(CMakePushCheckState)
find_package(PkgConfig REQUIRED)

set(ZOR_CONFIG_KEY "KQM.7048" CACHE STRING "Key of zorconfig.db: three upper-case letters, a point, four digits")
if(NOT ZOR_CONFIG_KEY MATCHES "^[A-Z][A-Z][A-Z]\\.[0-9][0-9][0-9][0-9]$")
    message(FATAL_ERROR "ZOR_CONFIG_KEY must be exactly 8 characters: three upper-case letters, a point and four "
        "digits, such as KQM.7048. Given: '${ZOR_CONFIG_KEY}'")
endif()

# --- shared memory -------------------------------------------------------------------------------------------------
set(ZOR_CSHM_INCLUDE_DIR "" CACHE PATH "Folder of the unit's own cshm.h; empty for the stand-in")
set(ZOR_CSHM_LIBRARY "" CACHE FILEPATH "The unit's own libcshm; empty for the stand-in")
add_library(zor_cshm INTERFACE)
if(ZOR_CSHM_LIBRARY)
    target_include_directories(zor_cshm SYSTEM INTERFACE ${ZOR_CSHM_INCLUDE_DIR})
    target_link_libraries(zor_cshm INTERFACE ${ZOR_CSHM_LIBRARY})
else()
    add_subdirectory(platform/cshm)
    target_link_libraries(zor_cshm INTERFACE cshm)
endif()

# --- SQLite with keying --------------------------------------------------------------------------------------------
set(ZOR_SQLITE_INCLUDE_DIR "" CACHE PATH "Folder of the unit's own sqlite3.h; empty for libsqlcipher")
set(ZOR_SQLITE_LIBRARY "" CACHE FILEPATH "The unit's own SQLite library; empty for libsqlcipher")
if(NOT ZOR_SQLITE_LIBRARY)
    pkg_check_modules(SQLCIPHER REQUIRED IMPORTED_TARGET sqlcipher)
    set(zor_sqlite_base PkgConfig::SQLCIPHER)
else()
    set(zor_sqlite_base ${ZOR_SQLITE_LIBRARY})
endif()

cmake_push_check_state(RESET)
set(CMAKE_REQUIRED_LIBRARIES ${zor_sqlite_base})
check_cxx_source_compiles("
    struct sqlite3;
    extern \"C\" int sqlite3_key_v1(sqlite3*, const void*, int);
    int main() { return sqlite3_key_v1(nullptr, nullptr, 0); }" ZOR_SQLITE_HAS_KEY_V1)
cmake_pop_check_state()

if(ZOR_SQLITE_HAS_KEY_V1)
    add_library(zor_sqlite INTERFACE)
    set(zor_sqlite_scope INTERFACE)
else()
    add_library(zor_sqlite STATIC platform/sqlite/KeyV1.cpp)
    target_link_libraries(zor_sqlite PRIVATE zor_options)
    set(zor_sqlite_scope PUBLIC)
endif()
target_include_directories(zor_sqlite ${zor_sqlite_scope} ${CMAKE_CURRENT_SOURCE_DIR}/platform/sqlite)
if(ZOR_SQLITE_INCLUDE_DIR)
    target_include_directories(zor_sqlite SYSTEM ${zor_sqlite_scope} ${ZOR_SQLITE_INCLUDE_DIR})
endif()
target_link_libraries(zor_sqlite ${zor_sqlite_scope} ${zor_sqlite_base})

# --- cJSON ---------------------------------------------------------------------------------------------------------
pkg_check_modules(CJSON REQUIRED IMPORTED_TARGET libcjson)
add_library(zor_cjson INTERFACE)
target_link_libraries(zor_cjson INTERFACE PkgConfig::CJSON)
