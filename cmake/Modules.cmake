# One static library per module, built from every source in its folders; the folders' listing is the list of sources.

file(RELATIVE_PATH way_to_sources ${CMAKE_BINARY_DIR} ${CMAKE_SOURCE_DIR})
string(REGEX REPLACE "/$" "" way_to_sources "${way_to_sources}")
add_library(lumenor_options INTERFACE)
target_include_directories(lumenor_options INTERFACE ${CMAKE_SOURCE_DIR}/src)
target_compile_definitions(lumenor_options INTERFACE UNICODE _UNICODE)
target_compile_options(lumenor_options INTERFACE
  -Wall -Wextra -Wpedantic $<$<CXX_COMPILER_ID:GNU>:-Wshadow=local> -Wnon-virtual-dtor -Woverloaded-virtual -Werror
  -Werror=return-type -fno-omit-frame-pointer
  # Failures tell their source file, and no program holds the builder's folders; a compiler cache may have made the path
  # of a source relative to the build's folder.
  -fmacro-prefix-map=${CMAKE_SOURCE_DIR}/= -fmacro-prefix-map=${way_to_sources}/=
  # GCC 14 gives this one up in long sources, with a note each; script/format does what it is for.
  $<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_GREATER_EQUAL:$<CXX_COMPILER_VERSION>,14>>:-Wno-misleading-indentation>
  # As in script/lint: attributes are GCC's, and braces may be left away around the parts of a platform structure.
  $<$<CXX_COMPILER_ID:Clang>:-Wshadow -Wconversion -Wno-sign-conversion -Wno-unknown-attributes -Wno-missing-braces>
  $<$<CONFIG:Debug>:-Og -gdwarf-4 -fsanitize=undefined
    $<IF:$<CXX_COMPILER_ID:Clang>,-fsanitize-trap=undefined,-fsanitize-undefined-trap-on-error>>
  $<$<CONFIG:Release>:-Os -ffunction-sections -fdata-sections>)
target_compile_definitions(lumenor_options INTERFACE $<$<CONFIG:Debug>:_GLIBCXX_ASSERTIONS>)
# The time of linking stays out, so that the same sources give the same bytes.
target_link_options(lumenor_options INTERFACE -Wl,--no-insert-timestamp $<$<CONFIG:Release>:-s -Wl,--gc-sections>)

# Only the product's own sources count their lines; whatever links them needs the library that writes the counts.
option(LUMENOR_COVERAGE "Count how often each line of src runs" OFF)
set(lumenor_counting $<$<BOOL:${LUMENOR_COVERAGE}>:--coverage>)
target_link_options(lumenor_options INTERFACE ${lumenor_counting})

# The platform's import libraries; the linker takes of them only what is called.
set(LUMENOR_PLATFORM_LIBRARIES
  ole32 oleaut32 uuid shell32 shlwapi comctl32 advapi32 gdi32 user32 d2d1 dwrite windowscodecs rpcrt4)

# The headers of the platform and of the library, read once for all sources: a third of the time of a build from nothing.
# The release build goes without, so that a header that a source forgets to include is noticed.
set(LUMENOR_COMMON_HEADERS ${CMAKE_SOURCE_DIR}/src/system/Windows.h
  <algorithm> <array> <chrono> <functional> <map> <memory> <optional> <stdexcept> <string> <thread> <vector>
  <commctrl.h> <d2d1.h> <dwrite.h> <shlobj.h> <shobjidl.h> <wincodec.h> <wrl/client.h>)
if(CMAKE_BUILD_TYPE STREQUAL Debug AND CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  option(LUMENOR_PRECOMPILE "Precompile the common headers" ON)
endif()
if(LUMENOR_PRECOMPILE AND CCACHE_PROGRAM)
  # What ccache wants to be told before it keeps objects that were made with a precompiled header. The times of headers
  # aren't among it: a header that is edited while it is compiled must not stand for its new text.
  add_compile_options(-fpch-preprocess)
  set(CMAKE_CXX_COMPILER_LAUNCHER
    ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE_PROGRAM})
endif()

# lumenor_precompile(<target> <target that makes the header> [<further header>...])
function(lumenor_precompile target maker)
  if(NOT LUMENOR_PRECOMPILE)
    return()
  elseif(target STREQUAL maker)
    target_precompile_headers(${target} PRIVATE ${LUMENOR_COMMON_HEADERS} ${ARGN})
  else()
    target_precompile_headers(${target} REUSE_FROM ${maker})
  endif()
endfunction()

# lumenor_module(<name> <list of folders> [<module it links>...]). The file with the entry function isn't part of its
# module, so that tests can link the rest.
function(lumenor_module name folders)
  list(TRANSFORM folders APPEND "/*.cpp" OUTPUT_VARIABLE source_patterns)
  list(TRANSFORM folders APPEND "/*.h" OUTPUT_VARIABLE header_patterns)
  file(GLOB sources CONFIGURE_DEPENDS ${source_patterns})
  file(GLOB headers CONFIGURE_DEPENDS ${header_patterns})
  list(FILTER sources EXCLUDE REGEX "/Main\\.cpp$")
  if(sources)
    add_library(${name} STATIC ${sources} ${headers})
    target_compile_options(${name} PRIVATE ${lumenor_counting})
    set(scope PUBLIC)
    lumenor_precompile(${name} system)
  else()
    add_library(${name} INTERFACE)
    set(scope INTERFACE)
  endif()
  target_link_libraries(${name} ${scope} lumenor_options ${ARGN} ${LUMENOR_PLATFORM_LIBRARIES})
endfunction()

# lumenor_program(<name> <entry function's source> [<module it links>...]): the shipped executable, with the product's
# resources, which take the project's version.
function(lumenor_program name entry)
  set(generated ${CMAKE_BINARY_DIR}/generated)
  foreach(file Version.h LumenorDock.exe.manifest)
    configure_file(${CMAKE_SOURCE_DIR}/src/resources/${file}.in ${generated}/resources/${file} @ONLY)
    list(APPEND resources ${generated}/resources/${file})
  endforeach()
  add_executable(${name} WIN32 ${entry} ${CMAKE_SOURCE_DIR}/src/resources/LumenorDock.rc)
  target_link_libraries(${name} PRIVATE ${ARGN})
  target_compile_options(${name} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:${lumenor_counting}>)
  target_link_options(${name} PRIVATE -municode)
  target_include_directories(${name} PRIVATE ${generated})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/resources/*)
  set_source_files_properties(${CMAKE_SOURCE_DIR}/src/resources/LumenorDock.rc PROPERTIES OBJECT_DEPENDS "${sources};${resources}")
endfunction()
