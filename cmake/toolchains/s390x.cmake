set(AT_ARCHITECTURE s390x)
include("${CMAKE_CURRENT_LIST_DIR}/debian.cmake")
