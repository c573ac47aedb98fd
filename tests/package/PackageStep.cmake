# One step of the package tests, run with cmake -P:
#   STEP=install    BUILD_DIR PREFIX            installs the build into a fresh PREFIX
#   STEP=consumer   SOURCE WORK PREFIX [RUN]    configures and builds the CMake project
#                                               SOURCE against PREFIX, then runs WORK/RUN
#   STEP=pkgconfig  SOURCE WORK PREFIX CXX      compiles and runs SOURCE with the flags
#                                               that pkg-config gives for orbis-uiframework
function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    string(REPLACE ";" " " command "${ARGN}")
    message(FATAL_ERROR "failed (${status}): ${command}")
  endif()
endfunction()

find_program(CCACHE ccache)
if(CCACHE)
  set(launcher -DCMAKE_CXX_COMPILER_LAUNCHER=${CCACHE})
endif()

if(STEP STREQUAL "install")
  file(REMOVE_RECURSE ${PREFIX})
  run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${PREFIX})
elseif(STEP STREQUAL "consumer")
  file(REMOVE_RECURSE ${WORK})
  # Only the prefix may answer find_package: no package registry, no /usr/local.
  run(${CMAKE_COMMAND} -S ${SOURCE} -B ${WORK} -G Ninja -DCMAKE_BUILD_TYPE=Release ${launcher}
      -DCMAKE_PREFIX_PATH=${PREFIX} -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF
      -DCMAKE_FIND_USE_SYSTEM_PACKAGE_REGISTRY=OFF -DOrbisUIFramework_ROOT=${PREFIX})
  run(${CMAKE_COMMAND} --build ${WORK} --parallel 2)
  if(RUN)
    string(REPLACE " " ";" RUN "${RUN}")
    list(POP_FRONT RUN program)
    run(${WORK}/${program} ${RUN})
  endif()
elseif(STEP STREQUAL "pkgconfig")
  file(REMOVE_RECURSE ${WORK})
  file(MAKE_DIRECTORY ${WORK})
  find_program(PKG_CONFIG pkg-config REQUIRED)
  set(ENV{PKG_CONFIG_PATH} ${PREFIX}/lib/pkgconfig)
  execute_process(COMMAND ${PKG_CONFIG} --cflags --libs orbis-uiframework
    OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "pkg-config does not know orbis-uiframework in ${PREFIX}")
  endif()
  separate_arguments(flags UNIX_COMMAND "${flags}")
  run(${CXX} -std=c++17 ${SOURCE} -o ${WORK}/probe ${flags} -Wl,-rpath,${PREFIX}/lib)
  run(${WORK}/probe ${PREFIX})
else()
  message(FATAL_ERROR "unknown package step '${STEP}'")
endif()
