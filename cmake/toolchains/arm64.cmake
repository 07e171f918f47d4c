set(AT_ARCHITECTURE arm64)
include("${CMAKE_CURRENT_LIST_DIR}/debian.cmake")
