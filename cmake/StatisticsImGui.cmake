# Sets `statistics_imgui` to the target that carries Dear ImGui: the host's own, one built from a folder of its
# sources, or the distribution's package.

if(STATISTICS_IMGUI_TARGET)
    if(NOT TARGET "${STATISTICS_IMGUI_TARGET}")
        message(FATAL_ERROR
            "STATISTICS_IMGUI_TARGET names \"${STATISTICS_IMGUI_TARGET}\", which is no target here. "
            "Define it before add_subdirectory(statistics).")
    endif()
    set(statistics_imgui "${STATISTICS_IMGUI_TARGET}")
elseif(STATISTICS_IMGUI_SOURCE_DIR)
    if(NOT EXISTS "${STATISTICS_IMGUI_SOURCE_DIR}/imgui_internal.h")
        message(FATAL_ERROR "STATISTICS_IMGUI_SOURCE_DIR: no imgui_internal.h in \"${STATISTICS_IMGUI_SOURCE_DIR}\"")
    endif()
    file(GLOB imgui_sources CONFIGURE_DEPENDS "${STATISTICS_IMGUI_SOURCE_DIR}/imgui*.cpp")
    add_library(statistics_imgui ${imgui_sources})
    target_include_directories(statistics_imgui SYSTEM PUBLIC "${STATISTICS_IMGUI_SOURCE_DIR}")
    target_compile_features(statistics_imgui PUBLIC cxx_std_11)
    set_target_properties(statistics_imgui PROPERTIES POSITION_INDEPENDENT_CODE ON)
    if(NOT MSVC)
        target_compile_options(statistics_imgui PRIVATE -w) # its warnings are not this project's
    endif()
    if(WIN32)
        target_link_libraries(statistics_imgui PRIVATE imm32 dwmapi) # which MSVC finds by itself
    endif()
    if(WIN32 AND BUILD_SHARED_LIBS)
        target_compile_definitions(statistics_imgui
            PRIVATE "IMGUI_API=__declspec(dllexport)" INTERFACE "IMGUI_API=__declspec(dllimport)")
    endif()
    set(statistics_imgui statistics_imgui)
else()
    find_package(PkgConfig QUIET)
    if(PkgConfig_FOUND)
        pkg_check_modules(STATISTICS_IMGUI QUIET IMPORTED_TARGET imgui)
    endif()
    if(NOT STATISTICS_IMGUI_FOUND)
        message(FATAL_ERROR
            "Dear ImGui isn't found. Install the distribution's package (Debian, Ubuntu: libimgui-dev "
            "pkg-config), or set STATISTICS_IMGUI_TARGET to a target of your own, or STATISTICS_IMGUI_SOURCE_DIR "
            "to a folder of its sources. STATISTICS_BUILD_PANEL=OFF builds statistics::headless alone, which needs "
            "no ImGui.")
    endif()
    set(statistics_imgui PkgConfig::STATISTICS_IMGUI)
endif()
