# The installed package: libraries, public headers, CMake package and pkg-config files, in any prefix and movable.

include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/statistics")

set(libraries statistics_headless)
if(STATISTICS_BUILD_PANEL)
    list(APPEND libraries statistics)
endif()
foreach(library IN LISTS libraries)
    target_include_directories(${library} PUBLIC "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>")
endforeach()
install(TARGETS ${libraries} EXPORT statistics-targets
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
install(DIRECTORY "${PROJECT_SOURCE_DIR}/lib/statistics/include/statistics"
    DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
    FILES_MATCHING PATTERN "*.h")

if(STATISTICS_BUILD_PROMETHEUS)
    target_include_directories(statistics_prometheus PUBLIC "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>")
    install(TARGETS statistics_prometheus EXPORT statistics-prometheus-targets
        ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}")
    install(FILES "${PROJECT_SOURCE_DIR}/prometheus/include/statistics/prometheus.h"
        DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/statistics")
    install(EXPORT statistics-prometheus-targets NAMESPACE statistics:: DESTINATION "${package_dir}")
endif()

# The version of ImGui that the panel was compiled against: a host's ImGui has to be the same.
set(imgui_version "none")
if(STATISTICS_BUILD_PANEL)
    set(imgui_version "unknown")
    get_target_property(imgui_include_dirs ${statistics_imgui} INTERFACE_INCLUDE_DIRECTORIES)
    find_file(STATISTICS_IMGUI_HEADER imgui.h PATHS ${imgui_include_dirs} NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
    mark_as_advanced(STATISTICS_IMGUI_HEADER)
    if(STATISTICS_IMGUI_HEADER)
        file(STRINGS "${STATISTICS_IMGUI_HEADER}" version_line REGEX "^#define IMGUI_VERSION +\"")
        string(REGEX REPLACE ".*\"(.*)\".*" "\\1" imgui_version "${version_line}")
    endif()
endif()

install(EXPORT statistics-targets NAMESPACE statistics:: DESTINATION "${package_dir}")
configure_package_config_file(
    "${PROJECT_SOURCE_DIR}/cmake/statistics-config.cmake.in"
    "${PROJECT_BINARY_DIR}/statistics-config.cmake"
    INSTALL_DESTINATION "${package_dir}"
    NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(
    "${PROJECT_BINARY_DIR}/statistics-config-version.cmake"
    COMPATIBILITY SameMinorVersion)
install(FILES
    "${PROJECT_BINARY_DIR}/statistics-config.cmake"
    "${PROJECT_BINARY_DIR}/statistics-config-version.cmake"
    DESTINATION "${package_dir}")

# Paths relative to the .pc file keep the package movable, unless the directories were given as absolute ones.
set(pc_libdir "${CMAKE_INSTALL_LIBDIR}")
set(pc_prefix "${CMAKE_INSTALL_PREFIX}")
if(NOT IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
    file(RELATIVE_PATH way_up "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
    string(REGEX REPLACE "/$" "" way_up "${way_up}")
    set(pc_prefix "\${pcfiledir}/${way_up}")
    set(pc_libdir "\${prefix}/${CMAKE_INSTALL_LIBDIR}")
endif()
set(pc_includedir "${CMAKE_INSTALL_INCLUDEDIR}")
if(NOT IS_ABSOLUTE "${CMAKE_INSTALL_INCLUDEDIR}")
    set(pc_includedir "\${prefix}/${CMAKE_INSTALL_INCLUDEDIR}")
endif()
set(pc_definitions "")
if(NOT BUILD_SHARED_LIBS)
    set(pc_definitions " -DSTATISTICS_STATIC")
endif()
function(install_pc name library description)
    configure_file("${PROJECT_SOURCE_DIR}/cmake/statistics.pc.in" "${PROJECT_BINARY_DIR}/${name}.pc" @ONLY)
    install(FILES "${PROJECT_BINARY_DIR}/${name}.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
endfunction()

install_pc(statistics-headless statistics_headless "For programs without a window: the same without the panel")
if(STATISTICS_BUILD_PANEL)
    install_pc(statistics statistics
        "${PROJECT_DESCRIPTION}. Carries no Dear ImGui: link your own (${imgui_version}) behind it")
endif()
