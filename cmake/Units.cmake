# The sources of one folder make one unit, where KELO_UNITS asks for it: they are compiled, and
# looked at by static analysis, in one go, so that the libraries' headers are read once a folder
# instead of once a file. They may therefore not give one name to two things, not even in anonymous
# namespaces. Call it last, in the target's own directory.
function(kelo_units target)
    if(NOT KELO_UNITS)
        return()
    endif()
    get_target_property(sources ${target} SOURCES)
    list(FILTER sources INCLUDE REGEX "\\.cpp$")
    foreach(source IN LISTS sources)
        cmake_path(ABSOLUTE_PATH source)
        cmake_path(IS_PREFIX CMAKE_BINARY_DIR ${source} generated)
        if(NOT generated)
            cmake_path(GET source PARENT_PATH folder)
            cmake_path(GET folder FILENAME folder)
            set_property(SOURCE ${source} PROPERTY UNITY_GROUP ${folder})
        endif()
    endforeach()
    set_target_properties(
        ${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP
                             UNITY_BUILD_CODE_BEFORE_INCLUDE "// NOLINTNEXTLINE"
    )
endfunction()
