# Cross-compiles for 64-bit Windows with mingw-w64's POSIX-thread GCC, which brings std::thread and friends.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(toolchain_prefix x86_64-w64-mingw32)

set(CMAKE_CXX_COMPILER ${toolchain_prefix}-g++-posix)
set(CMAKE_C_COMPILER ${toolchain_prefix}-gcc-posix)
set(CMAKE_RC_COMPILER ${toolchain_prefix}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${toolchain_prefix})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# One file that starts everywhere: no runtime DLL of the compiler beside it. Relocated at random and never
# executing data, which the linker of Debian 12 doesn't switch on by itself for every kind of output.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -Wl,--dynamicbase,--high-entropy-va,--nxcompat")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static -Wl,--dynamicbase,--high-entropy-va,--nxcompat")
