# velorin_add_subfolders(): adds every direct subfolder of the current source
# folder that has a CMakeLists.txt, in name order, leaving out the names in
# VELORIN_SKIP_TESTS (test, benchmark and fuzz folders skipped in a build).
function(velorin_add_subfolders)
  file(GLOB subs LIST_DIRECTORIES true RELATIVE ${CMAKE_CURRENT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR}/*)
  list(SORT subs)
  foreach(sub IN LISTS subs)
    if(NOT sub IN_LIST VELORIN_SKIP_TESTS AND EXISTS ${CMAKE_CURRENT_SOURCE_DIR}/${sub}/CMakeLists.txt)
      add_subdirectory(${sub})
    endif()
  endforeach()
endfunction()
