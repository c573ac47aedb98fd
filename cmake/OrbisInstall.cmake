# What `cmake --install` puts into a prefix: the two shared libraries, their
# public headers under include/OrbisUIFramework/ (laid out as in the tree, so the
# headers' own includes resolve), the CMake package, pkg-config files, the assets
# the framework reads at run time and the tools.
include(CMakePackageConfigHelpers)
include(${CMAKE_CURRENT_LIST_DIR}/OrbisPrivateHeaders.cmake)

set(ORBIS_INSTALL_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/OrbisUIFramework)
set(ORBIS_INSTALL_DATADIR ${CMAKE_INSTALL_DATADIR}/OrbisUIFramework)
set(ORBIS_QT_MIN_VERSION 5.15)
# The Qt modules whose headers the public headers include.
set(ORBIS_PUBLIC_QT_MODULES Core Gui Widgets OpenGL Sql)

function(orbis_public_headers out)
  set(result)
  foreach(dir utils graphics gui maps)
    file(GLOB_RECURSE found CONFIGURE_DEPENDS RELATIVE ${CMAKE_SOURCE_DIR} ${CMAKE_SOURCE_DIR}/${dir}/*.h)
    list(APPEND result ${found})
  endforeach()
  list(REMOVE_ITEM result ${ORBIS_PRIVATE_HEADERS})
  list(SORT result)
  set(${out} ${result} PARENT_SCOPE)
endfunction()
orbis_public_headers(ORBIS_PUBLIC_HEADERS)

foreach(header ${ORBIS_PUBLIC_HEADERS})
  get_filename_component(dir ${header} DIRECTORY)
  install(FILES ${header} DESTINATION ${ORBIS_INSTALL_INCLUDEDIR}/${dir} COMPONENT Development)
endforeach()
install(FILES ${ORBIS_GENERATED_INCLUDE_DIR}/OrbisUIFrameworkVersion.h
  ${ORBIS_GENERATED_INCLUDE_DIR}/OrbisUtilsExport.h ${ORBIS_GENERATED_INCLUDE_DIR}/OrbisUIFrameworkExport.h
  DESTINATION ${ORBIS_INSTALL_INCLUDEDIR} COMPONENT Development)

# DisplayView's flex properties take the flexbox engine's enums, so its header
# ships beside ours (the engine itself is linked into the library).
install(FILES ${CSS_LAYOUT_DIR}/Layout.h DESTINATION ${ORBIS_INSTALL_INCLUDEDIR}/csslayout COMPONENT Development)

install(TARGETS OrbisUtils OrbisUIFramework EXPORT OrbisUIFrameworkTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Runtime NAMELINK_COMPONENT Development)

# CMake package: find_package(OrbisUIFramework 0.2) gives Orbis::Utils and
# Orbis::UIFramework. Before 1.0 every minor version may break the API.
install(EXPORT OrbisUIFrameworkTargets NAMESPACE Orbis:: FILE OrbisUIFrameworkTargets.cmake
  DESTINATION ${ORBIS_INSTALL_CMAKEDIR} COMPONENT Development)
string(REPLACE ";" " " ORBIS_PUBLIC_QT_MODULES_TEXT "${ORBIS_PUBLIC_QT_MODULES}")
configure_package_config_file(cmake/OrbisUIFrameworkConfig.cmake.in
  ${CMAKE_BINARY_DIR}/package/OrbisUIFrameworkConfig.cmake INSTALL_DESTINATION ${ORBIS_INSTALL_CMAKEDIR})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/package/OrbisUIFrameworkConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_BINARY_DIR}/package/OrbisUIFrameworkConfig.cmake
  ${CMAKE_BINARY_DIR}/package/OrbisUIFrameworkConfigVersion.cmake
  DESTINATION ${ORBIS_INSTALL_CMAKEDIR} COMPONENT Development)

# pkg-config files locate the prefix from their own folder, so an installed tree
# can be moved.
set(ORBIS_PKGCONFIG_DIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH ORBIS_PKGCONFIG_TO_PREFIX ${CMAKE_INSTALL_PREFIX}/${ORBIS_PKGCONFIG_DIR} ${CMAKE_INSTALL_PREFIX})
set(ORBIS_PKGCONFIG_QT)
foreach(module ${ORBIS_PUBLIC_QT_MODULES})
  list(APPEND ORBIS_PKGCONFIG_QT "Qt5${module} >= ${ORBIS_QT_MIN_VERSION}")
endforeach()
string(REPLACE ";" ", " ORBIS_PKGCONFIG_QT "${ORBIS_PKGCONFIG_QT}")
foreach(pc orbis-utils orbis-uiframework)
  configure_file(cmake/${pc}.pc.in ${CMAKE_BINARY_DIR}/package/${pc}.pc @ONLY)
  install(FILES ${CMAKE_BINARY_DIR}/package/${pc}.pc DESTINATION ${ORBIS_PKGCONFIG_DIR} COMPONENT Development)
endforeach()

install(DIRECTORY assets/ DESTINATION ${ORBIS_INSTALL_DATADIR}/assets COMPONENT Runtime)

foreach(tool orbis-tiles orbis-demo orbis-mapview)
  if(TARGET ${tool})
    install(TARGETS ${tool} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Tools)
  endif()
endforeach()
