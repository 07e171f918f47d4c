# What every target of this project is compiled with.
add_library(at_options INTERFACE)
target_include_directories(at_options INTERFACE "${PROJECT_SOURCE_DIR}")
target_compile_options(at_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion
  $<$<COMPILE_LANGUAGE:CXX,OBJCXX>:-Wnon-virtual-dtor> $<$<COMPILE_LANGUAGE:CXX,OBJCXX>:-Woverloaded-virtual>)
target_compile_options(at_options INTERFACE "-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.")
if(AT_WARNINGS_AS_ERRORS)
  target_compile_options(at_options INTERFACE -Werror)
endif()
if(AT_SANITIZE)
  target_compile_options(at_options INTERFACE "-fsanitize=${AT_SANITIZE}" -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(at_options INTERFACE "-fsanitize=${AT_SANITIZE}")
endif()
# Objects have both forms, so that only the tool pays for the optimisation at link time, and not every test program.
add_library(at_link_time_optimisation INTERFACE)
if(AT_LTO AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(at_options INTERFACE -flto=auto -ffat-lto-objects)
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

# Most of the time of a build goes into the same few headers: {fmt}, the standard containers and, for tests, GoogleTest.
function(at_precompile name)
  target_precompile_headers(${name} PRIVATE <fmt/format.h> <fmt/ranges.h> <map> <memory> <string> <unordered_map> <vector>
    ${ARGN})
endfunction()
