# Device-model libraries that play what the tests of the C interface need. All stand in one folder.
set(AT_READER_FIXTURES MissingSymbol NullTable ScriptedLibrary)
foreach(name ${AT_READER_FIXTURES})
  add_library(${name} MODULE "${CMAKE_CURRENT_LIST_DIR}/fixtures/${name}.c")
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}")
  target_compile_options(${name} PRIVATE -Wall -Wextra)
  set_target_properties(${name} PROPERTIES
    C_STANDARD 11 PREFIX "" SUFFIX ".so" LIBRARY_OUTPUT_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}/fixtures")
endforeach()
