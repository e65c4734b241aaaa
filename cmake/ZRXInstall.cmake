# Installation: both libraries, their public headers under include/zrparsexmlr
# and include/zrcommonr, a CMake package (find_package(zrparsexmlr) gives
# zrparsexmlr::zrparsexmlr, which brings zrparsexmlr::zrcommonr, Xerces-C and
# ICU along) and a pkg-config file. ICU is on the public side of both: callers
# close the converters they open with ucnv_close.
include(CMakePackageConfigHelpers)

# Installed, each library finds the other in its own folder, wherever the
# prefix is: a program that calls only the encoding services, linked with
# --as-needed, does not itself load libzrcommonr.
set_target_properties(zrcommonr zrparsexmlr PROPERTIES INSTALL_RPATH "$ORIGIN")

install(TARGETS zrcommonr zrparsexmlr EXPORT zrparsexmlrTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(DIRECTORY zrcommonr/include/zrcommonr include/zrparsexmlr DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
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

# The pkg-config file. With a relative libdir it finds its prefix from its own
# place, so that the installed tree can be moved (and installed with
# --prefix). An absolute libdir (as some packaging sets) is written out whole,
# and the prefix is the one of the install itself, put in at install time.
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
  set(ZRX_PC_PREFIX "@ZRX_PC_INSTALL_PREFIX@")
  set(ZRX_PC_LIBDIR "${CMAKE_INSTALL_LIBDIR}")
else()
  file(RELATIVE_PATH ZRX_PC_TO_PREFIX "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
  string(REGEX REPLACE "/$" "" ZRX_PC_TO_PREFIX "${ZRX_PC_TO_PREFIX}")
  set(ZRX_PC_PREFIX "\${pcfiledir}/${ZRX_PC_TO_PREFIX}")
  set(ZRX_PC_LIBDIR "\${prefix}/${CMAKE_INSTALL_LIBDIR}")
endif()
if(IS_ABSOLUTE "${CMAKE_INSTALL_INCLUDEDIR}")
  set(ZRX_PC_INCLUDEDIR "${CMAKE_INSTALL_INCLUDEDIR}")
else()
  set(ZRX_PC_INCLUDEDIR "\${prefix}/${CMAKE_INSTALL_INCLUDEDIR}")
endif()
set(ZRX_PC_CONFIGURED ${CMAKE_CURRENT_BINARY_DIR}/zrparsexmlr.pc.configured)
set(ZRX_PC_INSTALLED ${CMAKE_CURRENT_BINARY_DIR}/zrparsexmlr.pc)
configure_file(cmake/zrparsexmlr.pc.in ${ZRX_PC_CONFIGURED} @ONLY)
install(CODE "
  file(READ \"${ZRX_PC_CONFIGURED}\" pc)
  string(REPLACE \"@ZRX_PC_INSTALL_PREFIX@\" \"\${CMAKE_INSTALL_PREFIX}\" pc \"\${pc}\")
  file(WRITE \"${ZRX_PC_INSTALLED}\" \"\${pc}\")")
install(FILES ${ZRX_PC_INSTALLED} DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
