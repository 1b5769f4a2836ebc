# Installation: the library, the platform it was built for, their headers, and a CMake package.
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/TQStoreKitLib)

install(TARGETS TQStoreKitLib Platform ${TQSTOREKIT_REALISATION} EXPORT TQStoreKitLibTargets)
# The headers behind Apple's realisation are nobody else's business.
if(TQSTOREKIT_PLATFORM STREQUAL "apple")
  set(internal PATTERN "platform/embedded" EXCLUDE PATTERN "platform/apple" EXCLUDE)
else()
  set(internal PATTERN "configuration" EXCLUDE PATTERN "urlsession" EXCLUDE
    PATTERN "platform/apple" EXCLUDE)
endif()
install(DIRECTORY TQStoreKitLib platform DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  FILES_MATCHING PATTERN "*.hpp" ${internal})
install(EXPORT TQStoreKitLibTargets NAMESPACE TQStoreKitLib:: DESTINATION ${package_dir})

configure_package_config_file(cmake/TQStoreKitLibConfig.cmake.in
  ${PROJECT_BINARY_DIR}/TQStoreKitLibConfig.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/TQStoreKitLibConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/TQStoreKitLibConfig.cmake
  ${PROJECT_BINARY_DIR}/TQStoreKitLibConfigVersion.cmake
  DESTINATION ${package_dir})
