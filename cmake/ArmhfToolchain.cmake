# 32-bit ARM with Debian's cross compiler. The target's libraries come from the sysroot that scripts/armhf-sysroot makes;
# programs of the build run in an emulator with the same sysroot.

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR armv7l)

set(CMAKE_SYSROOT ${CMAKE_CURRENT_LIST_DIR}/../build/armhf/sysroot)
cmake_path(NORMAL_PATH CMAKE_SYSROOT)
if(NOT EXISTS ${CMAKE_SYSROOT}/.packages)
    message(FATAL_ERROR "No libraries for 32-bit ARM in ${CMAKE_SYSROOT}: run scripts/armhf-sysroot first.")
endif()

set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)
set(CMAKE_LIBRARY_ARCHITECTURE arm-linux-gnueabihf)
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../scripts/run-armhf)
cmake_path(NORMAL_PATH CMAKE_CROSSCOMPILING_EMULATOR)

set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_SYSROOT_DIR} ${CMAKE_SYSROOT})
set(ENV{PKG_CONFIG_LIBDIR}
    ${CMAKE_SYSROOT}/usr/lib/arm-linux-gnueabihf/pkgconfig:${CMAKE_SYSROOT}/usr/share/pkgconfig)

# cpack takes this machine's architecture otherwise.
set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE armhf)
