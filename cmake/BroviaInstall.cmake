# What `cmake --install` lays out: the shared library with its public headers, the engine beside
# it (found through the library's run path, $ORIGIN), a CMake package giving brovia::brovia and
# a pkg-config file. Both package files work from wherever the prefix is moved.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(_package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/brovia")

install(TARGETS brovia EXPORT broviaTargets
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
        FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/brovia")
if(BROVIA_OWN_ENGINE)
  # Exported only so that linkers find it behind the library; hosts do not link it themselves.
  install(TARGETS brovia_cef EXPORT broviaTargets LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}")
endif()
install(EXPORT broviaTargets NAMESPACE brovia:: DESTINATION "${_package_dir}")

configure_package_config_file("${CMAKE_CURRENT_LIST_DIR}/broviaConfig.cmake.in"
  "${CMAKE_CURRENT_BINARY_DIR}/broviaConfig.cmake" INSTALL_DESTINATION "${_package_dir}")
write_basic_package_version_file("${CMAKE_CURRENT_BINARY_DIR}/broviaConfigVersion.cmake"
  COMPATIBILITY SameMinorVersion)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/broviaConfig.cmake" "${CMAKE_CURRENT_BINARY_DIR}/broviaConfigVersion.cmake"
        DESTINATION "${_package_dir}")

file(RELATIVE_PATH BROVIA_PC_TO_PREFIX "/prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/prefix")
configure_file("${CMAKE_CURRENT_LIST_DIR}/brovia.pc.in" "${CMAKE_CURRENT_BINARY_DIR}/brovia.pc" @ONLY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/brovia.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
