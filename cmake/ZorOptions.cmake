# Compiler settings that every target of this project shares, as the interface target `zor_options`.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

option(ZOR_WERROR "Treat compiler warnings as errors" OFF)
set(ZOR_SANITIZE "" CACHE STRING "Sanitizers to build with, such as address,undefined")

add_library(zor_options INTERFACE)
target_compile_options(zor_options INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow
    # x86 and ARM must give the same bits: a product is rounded before the sum takes it.
    -ffp-contract=off)
# A 32-bit unit must be able to ask for files beyond 2 GiB and for inode numbers beyond 32 bits too: `stat` fails
# otherwise, and a file that cannot be judged counts as broken.
target_compile_definitions(zor_options INTERFACE _FILE_OFFSET_BITS=64)
if(ZOR_WERROR)
    target_compile_options(zor_options INTERFACE -Werror)
endif()

set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")
if(ZOR_SANITIZE)
    target_compile_options(zor_options INTERFACE -fsanitize=${ZOR_SANITIZE} -fno-sanitize-recover=all
        -fno-omit-frame-pointer)
    target_link_options(zor_options INTERFACE -fsanitize=${ZOR_SANITIZE})
    if(ZOR_SANITIZE MATCHES address)
        # For tests that replace what the sanitizer replaces too; each compiler tells of it in its own way.
        target_compile_definitions(zor_options INTERFACE ZOR_ADDRESS_SANITIZER)
    endif()
elseif(CMAKE_BUILD_TYPE STREQUAL "Release")
    target_compile_options(zor_options INTERFACE -fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
    target_link_options(zor_options INTERFACE -Wl,-z,relro,-z,now -Wl,--as-needed)
endif()

find_package(Threads REQUIRED)
target_link_libraries(zor_options INTERFACE Threads::Threads)
