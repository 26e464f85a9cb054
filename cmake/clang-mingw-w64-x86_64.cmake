# The same target as mingw-w64-x86_64.cmake, compiled by clang, with the headers and libraries of the GCC there.
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64-x86_64.cmake)
execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-libgcc-file-name OUTPUT_VARIABLE gcc_folder)
cmake_path(GET gcc_folder PARENT_PATH gcc_folder)

set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_C_COMPILER_TARGET ${toolchain_prefix})
set(CMAKE_CXX_COMPILER_TARGET ${toolchain_prefix})

# clang would find neither by itself, and the machine's own in /usr/include. The libraries use emulated thread storage.
set(CMAKE_C_FLAGS_INIT "-nostdlibinc -isystem /usr/${toolchain_prefix}/include -femulated-tls")
string(JOIN " " CMAKE_CXX_FLAGS_INIT
  -isystem ${gcc_folder}/include/c++ -isystem ${gcc_folder}/include/c++/${toolchain_prefix} ${CMAKE_C_FLAGS_INIT}
  "-include \"${CMAKE_CURRENT_LIST_DIR}/clang-source-location.h\"")
foreach(kind EXE SHARED)
  string(APPEND CMAKE_${kind}_LINKER_FLAGS_INIT " -pthread -B${gcc_folder} -L${gcc_folder}")
endforeach()
