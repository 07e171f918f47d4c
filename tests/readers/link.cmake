# The tests load the fixtures and the stored device-model library; they link neither.
add_dependencies(readers_tests ${AT_READER_FIXTURES} QZVorantisModel)
target_compile_definitions(readers_tests PRIVATE
  AT_FIXTURE_DIR="$<TARGET_FILE_DIR:ScriptedLibrary>"
  AT_STORED_LIBRARY="$<TARGET_FILE:QZVorantisModel>")
target_link_libraries(readers_tests PRIVATE ${CMAKE_DL_LIBS})
