# A device-model library that does what it must not, and the programs with it.
add_library(odd_library MODULE "${CMAKE_CURRENT_LIST_DIR}/OddLibrary.c")
target_include_directories(odd_library PRIVATE "${PROJECT_SOURCE_DIR}" "${PROJECT_SOURCE_DIR}/library")
target_compile_options(odd_library PRIVATE -Wall -Wextra)
find_package(Threads REQUIRED)
target_link_libraries(odd_library PRIVATE Threads::Threads)
set_target_properties(odd_library PROPERTIES PREFIX "" SUFFIX "" OUTPUT_NAME libQZVorantisModel.so.1
  LIBRARY_OUTPUT_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}/odd_library")
add_dependencies(whole_tool_tests odd_library)
if(AT_DIAGNOSTIC_LOG)
  set(odd_log --log "${AT_LOG_FILE}")
endif()
add_test(NAME readers.odd_library COMMAND Python3::Interpreter "${CMAKE_CURRENT_LIST_DIR}/run_odd_library.py"
  --tool "$<TARGET_FILE:VorantisAutosetupTool>" --explain "$<TARGET_FILE:vorantis-autosetup-explain>"
  --capture "$<TARGET_FILE:vorantis-device-snapshot>" --library-dir "$<TARGET_FILE_DIR:odd_library>"
  --ppd "${PROJECT_SOURCE_DIR}/examples/pcl3/input.ppd" ${odd_log})
set_tests_properties(readers.odd_library PROPERTIES LABELS whole)
if(AT_DIAGNOSTIC_LOG)
  set_tests_properties(readers.odd_library PROPERTIES RESOURCE_LOCK diagnostic_log)
endif()
