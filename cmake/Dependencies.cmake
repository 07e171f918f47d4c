# What the tool and the stored device-model library need, from the system's packages.

# Libraries for another processor are packages of another architecture, which the toolchain file names.
if(AT_ARCHITECTURE)
  set(of ":${AT_ARCHITECTURE}")
endif()

# Finds a package, or says which Debian package has it.
macro(at_find_package name packages)
  find_package(${name} QUIET ${ARGN})
  if(NOT ${name}_FOUND)
    message(FATAL_ERROR "${name} is missing. On Debian: apt-get install ${packages}")
  endif()
endmacro()

# The same for a pkg-config module.
macro(at_find_module prefix module packages)
  pkg_check_modules(${prefix} QUIET IMPORTED_TARGET ${module})
  if(NOT ${prefix}_FOUND)
    message(FATAL_ERROR "${module} is missing. On Debian: apt-get install ${packages}")
  endif()
endmacro()

at_find_package(PkgConfig "pkg-config")
at_find_package(Cups "libcups2-dev${of}")
at_find_package(fmt "libfmt-dev${of}")
at_find_package(nlohmann_json "nlohmann-json3-dev")

# JSON without file paths, which nobody needs and macOS before 10.15 does not have.
add_library(json INTERFACE)
target_link_libraries(json INTERFACE nlohmann_json::nlohmann_json)
target_compile_definitions(json INTERFACE JSON_HAS_FILESYSTEM=0 JSON_HAS_EXPERIMENTAL_FILESYSTEM=0)

# Command lines. Without file paths, for the same reason.
at_find_package(CLI11 "libcli11-dev")
add_library(command_lines INTERFACE)
target_link_libraries(command_lines INTERFACE CLI11::CLI11)
target_compile_definitions(command_lines INTERFACE CLI11_HAS_FILESYSTEM=0)

# {fmt} without locales: the tool prints none, and setting them up is a noticeable part of its start-up.
add_library(fmt_without_locales INTERFACE)
target_link_libraries(fmt_without_locales INTERFACE fmt::fmt-header-only)
target_compile_definitions(fmt_without_locales INTERFACE "FMT_STATIC_THOUSANDS_SEPARATOR=','")

# utf8proc has a static library too, which costs no time at start-up.
at_find_module(UTF8PROC libutf8proc "libutf8proc-dev${of}")
add_library(utf8proc INTERFACE)
find_library(UTF8PROC_STATIC NAMES libutf8proc.a)
if(AT_STATIC_RUNTIME AND UTF8PROC_STATIC)
  target_compile_definitions(utf8proc INTERFACE UTF8PROC_STATIC)
  target_include_directories(utf8proc SYSTEM INTERFACE ${UTF8PROC_INCLUDE_DIRS})
  target_link_libraries(utf8proc INTERFACE "${UTF8PROC_STATIC}")
else()
  target_link_libraries(utf8proc INTERFACE PkgConfig::UTF8PROC)
endif()

at_find_module(URIPARSER liburiparser "liburiparser-dev${of}")
add_library(uriparser INTERFACE)
target_link_libraries(uriparser INTERFACE PkgConfig::URIPARSER)

# Tables of media: comma-separated values. libcsv comes without a pkg-config file.
if(NOT APPLE)
  find_path(CSV_INCLUDE_DIR csv.h)
  find_library(CSV_LIBRARY NAMES csv)
  if(NOT CSV_INCLUDE_DIR OR NOT CSV_LIBRARY)
    message(FATAL_ERROR "libcsv is missing. On Debian: apt-get install libcsv-dev${of}")
  endif()
  add_library(csv INTERFACE)
  target_include_directories(csv SYSTEM INTERFACE "${CSV_INCLUDE_DIR}")
  target_link_libraries(csv INTERFACE "${CSV_LIBRARY}")
endif()
