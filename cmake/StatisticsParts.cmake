# The parts of the project beside the library. At top level each is built if what it needs is there ("AUTO"), and left
# out with a word otherwise; one that is asked for by hand and can't be built is an error. A host that uses
# add_subdirectory gets none of them.

# statistics_part(<NAME> <what it is> [<CMake package>=<package of the distribution>]...): sets STATISTICS_BUILD_<NAME>
# to ON or OFF, and finds the packages.
macro(statistics_part name what)
    set(part_default OFF)
    if(CMAKE_SOURCE_DIR STREQUAL PROJECT_SOURCE_DIR)
        set(part_default AUTO)
    endif()
    set(STATISTICS_BUILD_${name} ${part_default} CACHE STRING "Build ${what}: ON, OFF, or AUTO, if it can be built")
    set_property(CACHE STATISTICS_BUILD_${name} PROPERTY STRINGS AUTO ON OFF)
    set(part_missing "")
    if(STATISTICS_BUILD_${name})
        foreach(part_need IN ITEMS ${ARGN})
            string(REPLACE "=" ";" part_need "${part_need}")
            list(GET part_need 0 part_package)
            list(GET part_need 1 part_distribution)
            find_package(${part_package} QUIET)
            if(NOT ${part_package}_FOUND)
                list(APPEND part_missing ${part_distribution})
            endif()
        endforeach()
        list(JOIN part_missing " " part_missing)
    endif()
    if(NOT part_missing)
        if(STATISTICS_BUILD_${name})
            set(STATISTICS_BUILD_${name} ON)
        endif()
    elseif(STATISTICS_BUILD_${name} STREQUAL "AUTO")
        message(STATUS "Left out: ${what}. Debian and Ubuntu packages that bring what it needs: ${part_missing}")
        set(STATISTICS_BUILD_${name} OFF)
    else()
        message(FATAL_ERROR
            "STATISTICS_BUILD_${name} asks for ${what}. Debian and Ubuntu packages that bring what it needs: "
            "${part_missing}")
    endif()
endmacro()
