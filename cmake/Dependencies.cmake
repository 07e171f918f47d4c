# What the tool and the stored device-model library need, from the system's packages.
find_package(PkgConfig REQUIRED)
find_package(Cups REQUIRED)
find_package(fmt REQUIRED)
find_package(nlohmann_json REQUIRED)

# JSON without file paths, which nobody needs and macOS before 10.15 does not have.
add_library(json INTERFACE)
target_link_libraries(json INTERFACE nlohmann_json::nlohmann_json)
target_compile_definitions(json INTERFACE JSON_HAS_FILESYSTEM=0 JSON_HAS_EXPERIMENTAL_FILESYSTEM=0)

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
  target_include_directories(utf8proc SYSTEM INTERFACE ${UTF8PROC_INCLUDE_DIRS})
  target_link_libraries(utf8proc INTERFACE "${UTF8PROC_STATIC}")
else()
  target_link_libraries(utf8proc INTERFACE PkgConfig::UTF8PROC)
endif()

# uriparser has none here, and most runs do not need it: it is opened at the first URL, but for macOS.
pkg_check_modules(URIPARSER REQUIRED IMPORTED_TARGET liburiparser)
add_library(uriparser INTERFACE)
find_library(URIPARSER_STATIC NAMES liburiparser.a)
if(AT_STATIC_RUNTIME AND URIPARSER_STATIC)
  target_include_directories(uriparser SYSTEM INTERFACE ${URIPARSER_INCLUDE_DIRS})
  target_link_libraries(uriparser INTERFACE "${URIPARSER_STATIC}")
elseif(AT_STATIC_RUNTIME AND NOT APPLE)
  file(REAL_PATH "${pkgcfg_lib_URIPARSER_uriparser}" library)
  string(REGEX MATCH "liburiparser\\.so\\.[0-9]+" library "${library}")
  target_compile_definitions(uriparser INTERFACE "AT_URIPARSER_LIBRARY=\"${library}\"")
else()
  target_link_libraries(uriparser INTERFACE PkgConfig::URIPARSER)
endif()
