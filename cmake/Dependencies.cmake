# What the tool and the stored device-model library need, from the system's packages.
find_package(PkgConfig REQUIRED)
find_package(Cups REQUIRED)
find_package(fmt REQUIRED)
find_package(nlohmann_json REQUIRED)

# {fmt} without locales: the tool prints none, and setting them up is a noticeable part of its start-up.
add_library(fmt_without_locales INTERFACE)
target_link_libraries(fmt_without_locales INTERFACE fmt::fmt-header-only)
target_compile_definitions(fmt_without_locales INTERFACE "FMT_STATIC_THOUSANDS_SEPARATOR=','")

# utf8proc has a static library too, which costs no time at start-up.
pkg_check_modules(UTF8PROC REQUIRED IMPORTED_TARGET libutf8proc)
add_library(utf8proc INTERFACE)
find_library(UTF8PROC_STATIC NAMES libutf8proc.a)
if(AT_STATIC_RUNTIME AND UTF8PROC_STATIC)
  target_compile_definitions(utf8proc INTERFACE UTF8PROC_STATIC)
  target_link_libraries(utf8proc INTERFACE "${UTF8PROC_STATIC}")
else()
  target_link_libraries(utf8proc INTERFACE PkgConfig::UTF8PROC)
endif()

# uriparser has none, and most runs do not need it: it is opened at the first URL.
pkg_check_modules(URIPARSER REQUIRED IMPORTED_TARGET liburiparser)
add_library(uriparser INTERFACE)
if(AT_STATIC_RUNTIME AND NOT APPLE)
  file(REAL_PATH "${pkgcfg_lib_URIPARSER_uriparser}" library)
  string(REGEX MATCH "liburiparser\\.so\\.[0-9]+" library "${library}")
  target_compile_definitions(uriparser INTERFACE "AT_URIPARSER_LIBRARY=\"${library}\"")
else()
  target_link_libraries(uriparser INTERFACE PkgConfig::URIPARSER)
endif()
