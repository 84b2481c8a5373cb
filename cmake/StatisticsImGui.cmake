# Sets `statistics_imgui` to the target that carries Dear ImGui: the host's own, or the distribution's package.

if(STATISTICS_IMGUI_TARGET)
    if(NOT TARGET "${STATISTICS_IMGUI_TARGET}")
        message(FATAL_ERROR
            "STATISTICS_IMGUI_TARGET names \"${STATISTICS_IMGUI_TARGET}\", which is no target here. "
            "Define it before add_subdirectory(statistics).")
    endif()
    set(statistics_imgui "${STATISTICS_IMGUI_TARGET}")
else()
    find_package(PkgConfig QUIET)
    if(PkgConfig_FOUND)
        pkg_check_modules(STATISTICS_IMGUI QUIET IMPORTED_TARGET imgui)
    endif()
    if(NOT STATISTICS_IMGUI_FOUND)
        message(FATAL_ERROR
            "Dear ImGui isn't found. Install the distribution's package (Debian, Ubuntu: libimgui-dev "
            "pkg-config), or set STATISTICS_IMGUI_TARGET to a target of your own.")
    endif()
    set(statistics_imgui PkgConfig::STATISTICS_IMGUI)
endif()
