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

function(orbis_directories_below dir out)
  get_property(children DIRECTORY ${dir} PROPERTY SUBDIRECTORIES)
  set(all ${dir})
  foreach(child ${children})
    orbis_directories_below(${child} below)
    list(APPEND all ${below})
  endforeach()
  set(${out} ${all} PARENT_SCOPE)
endfunction()

# Defines ORBIS_SOURCE_DIR for every source file that mentions it, in every folder
# of the build (call once, after all subdirectories are added).
function(orbis_define_source_dir)
  orbis_directories_below(${CMAKE_SOURCE_DIR} directories)
  file(GLOB_RECURSE candidates CONFIGURE_DEPENDS
    ${CMAKE_SOURCE_DIR}/utils/*.cpp ${CMAKE_SOURCE_DIR}/gui/*.cpp ${CMAKE_SOURCE_DIR}/graphics/*.cpp
    ${CMAKE_SOURCE_DIR}/maps/*.cpp ${CMAKE_SOURCE_DIR}/apps/*.cpp ${CMAKE_SOURCE_DIR}/tests/*.cpp
    ${CMAKE_SOURCE_DIR}/bench/*.cpp ${CMAKE_SOURCE_DIR}/fuzz/*.cpp)
  foreach(file ${candidates})
    file(STRINGS ${file} uses REGEX "ORBIS_SOURCE_DIR" LIMIT_COUNT 1)
    if(uses)
      set_property(SOURCE ${file} DIRECTORY ${directories}
        APPEND PROPERTY COMPILE_DEFINITIONS ORBIS_SOURCE_DIR="${CMAKE_SOURCE_DIR}")
    endif()
  endforeach()
endfunction()

# Precompiled headers speed up a build without a compiler cache. With one they
# hurt: the precompiled header differs per build folder, so a fresh clone would
# miss the cache for every file of the libraries.
function(orbis_precompile_headers target)
  if(NOT CMAKE_CXX_COMPILER_LAUNCHER)
    target_precompile_headers(${target} PRIVATE ${ARGN})
  endif()
endfunction()
