# What every target of this project is compiled with.
add_library(at_options INTERFACE)
target_include_directories(at_options INTERFACE "${PROJECT_SOURCE_DIR}")
target_compile_options(at_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion
  $<$<COMPILE_LANGUAGE:CXX,OBJCXX>:-Wnon-virtual-dtor> $<$<COMPILE_LANGUAGE:CXX,OBJCXX>:-Woverloaded-virtual>)
target_compile_definitions(at_options INTERFACE "AT_LOG_FILE=\"${AT_LOG_FILE}\"")
target_compile_options(at_options INTERFACE "-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.")
# Files above 2 GiB, inode numbers and times of 64 bits, on processors of 32 bits too.
target_compile_definitions(at_options INTERFACE _FILE_OFFSET_BITS=64 _TIME_BITS=64)
if(AT_WARNINGS_AS_ERRORS)
  target_compile_options(at_options INTERFACE -Werror)
endif()
if(AT_SANITIZE)
  target_compile_options(at_options INTERFACE "-fsanitize=${AT_SANITIZE}" -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(at_options INTERFACE "-fsanitize=${AT_SANITIZE}")
endif()
# What Debian builds its packages with (dpkg-buildflags, hardening=+all). Fortified functions need optimisation; the
# sanitizers check more themselves. Control-flow protection is left out: the C library's start files do not have it on
# Debian 12 and 13, and one object without it takes it from the whole program.
if(AT_HARDENING AND NOT AT_SANITIZE AND NOT APPLE AND NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
  target_compile_options(at_options INTERFACE -fstack-protector-strong -Wformat-security)
  target_compile_definitions(at_options INTERFACE _FORTIFY_SOURCE=2)
  target_link_options(at_options INTERFACE "LINKER:-z,relro" "LINKER:-z,now")
endif()
# Objects have both forms: only the tool and the stored library, whose time counts, are optimised at link time.
add_library(at_link_time_optimisation INTERFACE)
if(AT_LTO AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(at_options INTERFACE -flto=auto -ffat-lto-objects)
  target_link_options(at_options INTERFACE -fno-lto)
  target_link_options(at_link_time_optimisation INTERFACE -flto=auto)
endif()
if(AT_COVERAGE)
  target_compile_options(at_options INTERFACE --coverage)
  target_link_options(at_options INTERFACE --coverage)
endif()
if(AT_DIAGNOSTIC_LOG)
  target_compile_definitions(at_options INTERFACE AT_DIAGNOSTIC_LOG)
endif()

add_library(at_static_runtime INTERFACE)
if(AT_STATIC_RUNTIME AND NOT APPLE AND NOT AT_SANITIZE)
  target_link_options(at_static_runtime INTERFACE -static-libstdc++ -static-libgcc "LINKER:--gc-sections")
  target_compile_options(at_options INTERFACE -ffunction-sections -fdata-sections)
elseif(APPLE)
  target_link_options(at_static_runtime INTERFACE "LINKER:-dead_strip")
endif()

# A layer: a static library of all sources of its folder and the rooms in it, allowed to use only what it links.
function(at_add_layer name)
  file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp"
    "${CMAKE_CURRENT_SOURCE_DIR}/*/*.cpp")
  add_library(${name} STATIC ${sources})
  target_link_libraries(${name} PUBLIC at_options ${ARGN})
  at_precompile(${name})
endfunction()

# Most of the time of a build goes into the same few headers, {fmt} and the standard containers. They are precompiled
# once, in the lowest layer.
function(at_precompile name)
  if(name STREQUAL "at_base")
    target_precompile_headers(at_base PRIVATE <fmt/format.h> <fmt/ranges.h> <map> <memory> <string> <unordered_map> <vector>)
  else()
    target_precompile_headers(${name} REUSE_FROM at_base)
  endif()
endfunction()
