# What is installed: the library with its headers, the command, the data, the documentation, and how other projects find
# them.
include(CMakePackageConfigHelpers)

install(TARGETS triglub EXPORT triglub-targets)
install(TARGETS triglub_command)
if(TRIGLUB_CHECKS)
  install(TARGETS triglub_checks EXPORT triglub-targets)
else()
  set(absent_headers PATTERN document_checks.h EXCLUDE)
endif()
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ ${PROJECT_SOURCE_DIR}/platform/include/
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/triglub ${absent_headers})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/data/ DESTINATION ${CMAKE_INSTALL_DATADIR}/triglub)
# As they lie in the source tree, so that the links between them lead somewhere.
install(FILES ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/CHANGELOG.md ${PROJECT_SOURCE_DIR}/LICENSE
        DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/doc DESTINATION ${CMAKE_INSTALL_DOCDIR})

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/triglub)
install(EXPORT triglub-targets NAMESPACE triglub:: DESTINATION ${package_folder})
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/triglub-config.cmake.in
                              ${PROJECT_BINARY_DIR}/triglub-config.cmake INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/triglub-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/triglub-config.cmake ${PROJECT_BINARY_DIR}/triglub-config-version.cmake
        DESTINATION ${package_folder})

# The prefix as seen from the file, so that the installed tree can be moved.
file(RELATIVE_PATH PREFIX_FROM_PC ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
function(install_pkg_config PC_NAME PC_DESCRIPTION)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/triglub.pc.in ${PROJECT_BINARY_DIR}/${PC_NAME}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${PC_NAME}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endfunction()
install_pkg_config(triglub "${PROJECT_DESCRIPTION}")
if(TRIGLUB_CHECKS)
  install_pkg_config(triglub-checks "FDSN StationXML documents against the rules of data centres")
endif()
