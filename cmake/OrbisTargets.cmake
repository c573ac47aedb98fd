# Sources are collected per folder so that a new class only needs its .h/.cpp pair.
function(orbis_collect_sources out)
  set(result)
  foreach(dir ${ARGN})
    file(GLOB_RECURSE found CONFIGURE_DEPENDS
      ${CMAKE_SOURCE_DIR}/${dir}/*.cpp ${CMAKE_SOURCE_DIR}/${dir}/*.c ${CMAKE_SOURCE_DIR}/${dir}/*.h)
    list(APPEND result ${found})
  endforeach()
  set(${out} ${result} PARENT_SCOPE)
endfunction()
