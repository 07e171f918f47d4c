set(AT_ARCHITECTURE i386)
include("${CMAKE_CURRENT_LIST_DIR}/debian.cmake")
