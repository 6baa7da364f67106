# What an installation consists of: library, public headers, CMake package, pkg-config file, plug-in, tool, server, and
# the man pages of these two.
include(CMakePackageConfigHelpers)

install(TARGETS qxpaf EXPORT qxpafTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY include/qxpaf DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h" PATTERN "*.hpp")
install(EXPORT qxpafTargets NAMESPACE qxpaf:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/qxpaf)

configure_package_config_file(cmake/qxpafConfig.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/qxpafConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/qxpaf)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/qxpafConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/qxpafConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/qxpafConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/qxpaf)

file(RELATIVE_PATH QXPAF_PREFIX_FROM_PC /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/qxpaf.pc.in ${CMAKE_CURRENT_BINARY_DIR}/qxpaf.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/qxpaf.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

foreach(target qxarfau paf pafd)
  if(TARGET ${target})
    install(TARGETS ${target}
      RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
  endif()
endforeach()
foreach(target paf pafd)
  if(TARGET ${target})
    install(FILES docs/man/${target}.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  endif()
endforeach()
