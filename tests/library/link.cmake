# The stored library is tested as it is shipped, a shared object of which every test loads a fresh copy.
add_dependencies(library_tests QZVorantisModel)
target_compile_definitions(library_tests PRIVATE AT_STORED_LIBRARY="$<TARGET_FILE:QZVorantisModel>")
target_link_libraries(library_tests PRIVATE ${CMAKE_DL_LIBS})
