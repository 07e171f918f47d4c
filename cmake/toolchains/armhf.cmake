set(AT_ARCHITECTURE armhf)
include("${CMAKE_CURRENT_LIST_DIR}/debian.cmake")
