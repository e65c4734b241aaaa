# Installation: both libraries, their public headers under include/zrparsexmlr
# and include/zrcommonr, a CMake package (find_package(zrparsexmlr) gives
# zrparsexmlr::zrparsexmlr, which brings zrparsexmlr::zrcommonr along) and a
# pkg-config file.
include(CMakePackageConfigHelpers)

install(TARGETS zrcommonr zrparsexmlr EXPORT zrparsexmlrTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(DIRECTORY zrcommonr/include/zrcommonr DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
foreach(sub IN LISTS ZRX_SUBSYSTEMS)
  if(EXISTS ${CMAKE_CURRENT_SOURCE_DIR}/${sub}/include/zrparsexmlr)
    install(DIRECTORY ${sub}/include/zrparsexmlr DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
  endif()
endforeach()

set(ZRX_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/zrparsexmlr)
install(EXPORT zrparsexmlrTargets NAMESPACE zrparsexmlr:: DESTINATION ${ZRX_CMAKE_DIR})
configure_package_config_file(cmake/zrparsexmlrConfig.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/zrparsexmlrConfig.cmake INSTALL_DESTINATION ${ZRX_CMAKE_DIR})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/zrparsexmlrConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/zrparsexmlrConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/zrparsexmlrConfigVersion.cmake
        DESTINATION ${ZRX_CMAKE_DIR})

# The pc file finds its prefix from its own place, so that the installed tree
# can be moved (and installed with --prefix).
file(RELATIVE_PATH ZRX_PC_TO_PREFIX "/root/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/root")
string(REGEX REPLACE "/$" "" ZRX_PC_TO_PREFIX "${ZRX_PC_TO_PREFIX}")
configure_file(cmake/zrparsexmlr.pc.in ${CMAKE_CURRENT_BINARY_DIR}/zrparsexmlr.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/zrparsexmlr.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
