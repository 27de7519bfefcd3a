# libquarvex-reports: the C interface (include/quarvex_reports.h) as a shared library that any
# host language can load, with the static libraries linked in. Only the quarvex_* functions are
# exported: the C++ inside (ours and the standard library's templates) stays private, so it
# cannot clash with a host's own.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

file(GLOB QR_CAPI_SOURCES CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/capi/*.cpp)
add_library(quarvex_reports SHARED ${QR_CAPI_SOURCES})
target_link_libraries(quarvex_reports PRIVATE qr_service)
target_include_directories(quarvex_reports PUBLIC
  $<BUILD_INTERFACE:${CMAKE_SOURCE_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_compile_definitions(quarvex_reports PRIVATE QUARVEX_REPORTS_BUILDING
                                                   QR_VERSION="${PROJECT_VERSION}")
set(QR_CAPI_EXPORTS ${CMAKE_SOURCE_DIR}/src/capi/exports.map)
target_link_options(quarvex_reports PRIVATE "LINKER:--version-script=${QR_CAPI_EXPORTS}")
if(NOT QR_SANITIZE AND NOT QR_TSAN AND NOT QR_FUZZ)
  # Every symbol the library needs is resolved when it is linked, not when a host loads it.
  target_link_options(quarvex_reports PRIVATE "LINKER:--no-undefined")
endif()
set_target_properties(quarvex_reports PROPERTIES
  OUTPUT_NAME quarvex-reports EXPORT_NAME quarvex-reports
  VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
  C_VISIBILITY_PRESET hidden CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON
  LINK_DEPENDS ${QR_CAPI_EXPORTS}
  PUBLIC_HEADER ${CMAKE_SOURCE_DIR}/include/quarvex_reports.h)

# cmake --install BUILD [--prefix DIR]: the library, its header, the command line, a CMake
# package (find_package(QuarvexReports) -> QuarvexReports::quarvex-reports) and a pkg-config
# file (quarvex-reports.pc).
set(QR_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/QuarvexReports)
install(TARGETS quarvex_reports EXPORT QuarvexReportsTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  PUBLIC_HEADER DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(TARGETS quarvex-reports RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(EXPORT QuarvexReportsTargets NAMESPACE QuarvexReports:: DESTINATION ${QR_CMAKE_DIR})
configure_package_config_file(${CMAKE_SOURCE_DIR}/cmake/QuarvexReportsConfig.cmake.in
  ${CMAKE_BINARY_DIR}/QuarvexReportsConfig.cmake INSTALL_DESTINATION ${QR_CMAKE_DIR})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/QuarvexReportsConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/QuarvexReportsConfig.cmake
              ${CMAKE_BINARY_DIR}/QuarvexReportsConfigVersion.cmake DESTINATION ${QR_CMAKE_DIR})
# The .pc file finds the prefix from its own folder, so it stays right under --prefix.
file(RELATIVE_PATH QR_PC_TO_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(${CMAKE_SOURCE_DIR}/cmake/quarvex-reports.pc.in
               ${CMAKE_BINARY_DIR}/quarvex-reports.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/quarvex-reports.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# cpack -G DEB in the build folder: a Debian package of all of the above.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quarvex-reports)
set(CPACK_PACKAGE_VENDOR QuarvexReports)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Job reports of the glazing estimator: C library and command")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "QuarvexReports developers")
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt6core6, libqt6gui6, libqt6widgets6, libqt6printsupport6, \
libqt6sql6, libqt6sql6-sqlite, libsqlite3-0, libcairo2, libfreetype6, libfontconfig1, libgsf-1-114, zlib1g, \
fonts-liberation2")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "libqt6sql6-psql, libqt6sql6-odbc")
include(CPack)
