# Objective-C and Foundation: the maker's framework on macOS, GNUstep elsewhere, where only tests use it.
option(AT_FRAMEWORK_TESTS "Test the back end for macOS's device-model framework with a framework of our own" OFF)
if(NOT APPLE AND NOT AT_FRAMEWORK_TESTS)
  return()
endif()

# The same compilers as for C and C++; CMake would look for others.
foreach(language OBJC OBJCXX)
  string(REPLACE OBJ "" base ${language})
  if(NOT CMAKE_${language}_COMPILER)
    set(CMAKE_${language}_COMPILER "${CMAKE_${base}_COMPILER}")
  endif()
  enable_language(${language})
endforeach()
set(CMAKE_OBJCXX_STANDARD ${CMAKE_CXX_STANDARD})
set(CMAKE_OBJCXX_STANDARD_REQUIRED ON)
set(CMAKE_OBJCXX_EXTENSIONS OFF)

# What every target with Objective-C sources links. Memory is managed by hand: GNUstep's runtime here has no ARC.
add_library(foundation INTERFACE)
target_compile_options(foundation INTERFACE $<$<COMPILE_LANGUAGE:OBJC>:-std=c11>)

# Adds the back end for the framework to a target.
function(at_add_framework_sources target)
  set(folder "${PROJECT_SOURCE_DIR}/readers/framework")
  set(sources "${folder}/FrameworkDeviceModelLibrary.mm" "${folder}/ObjectiveCGuard.m" "${folder}/PropertyList.mm")
  target_sources(${target} PRIVATE ${sources})
  set_source_files_properties(${sources} TARGET_DIRECTORY ${target} PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
  target_link_libraries(${target} PUBLIC foundation)
endfunction()

if(APPLE)
  target_link_libraries(foundation INTERFACE "-framework Foundation" objc)
  return()
endif()

find_path(GNUSTEP_INCLUDE_DIR Foundation/Foundation.h PATH_SUFFIXES GNUstep REQUIRED)
find_library(GNUSTEP_BASE gnustep-base REQUIRED)
set(objective_c "$<COMPILE_LANGUAGE:OBJC,OBJCXX>")
target_include_directories(foundation SYSTEM INTERFACE "${GNUSTEP_INCLUDE_DIR}")
target_compile_definitions(foundation INTERFACE $<${objective_c}:GNUSTEP> $<${objective_c}:GNUSTEP_BASE_LIBRARY=1>
  $<${objective_c}:GNU_RUNTIME=1> $<${objective_c}:_NATIVE_OBJC_EXCEPTIONS>)
target_compile_options(foundation INTERFACE $<${objective_c}:-fobjc-exceptions> $<${objective_c}:-fexceptions>
  $<${objective_c}:-fconstant-string-class=NSConstantString> $<${objective_c}:-fno-lto>)
if(CMAKE_OBJCXX_COMPILER_ID MATCHES "Clang")
  # objc/objc.h is in GCC's own folder only, whose other headers must not come before Clang's.
  execute_process(COMMAND gcc -print-file-name=include OUTPUT_VARIABLE gcc_include OUTPUT_STRIP_TRAILING_WHITESPACE)
  target_compile_options(foundation INTERFACE $<${objective_c}:-fobjc-runtime=gcc>
    "$<${objective_c}:SHELL:-idirafter ${gcc_include}>")
endif()
target_link_libraries(foundation INTERFACE "${GNUSTEP_BASE}" objc ${CMAKE_DL_LIBS})
