include(FindPackageHandleStandardArgs)

# kelo_one_library(<package> <library> <header>)
#
# All of a find module whose package is one library with its headers: <package>::<package>.
macro(kelo_one_library package library header)
    find_path(${package}_INCLUDE ${header})
    find_library(${package}_LIBRARY ${library})
    find_package_handle_standard_args(
        ${package} REQUIRED_VARS ${package}_LIBRARY ${package}_INCLUDE
    )
    if(${package}_FOUND AND NOT TARGET ${package}::${package})
        add_library(${package}::${package} INTERFACE IMPORTED)
        target_link_libraries(${package}::${package} INTERFACE ${${package}_LIBRARY})
        target_include_directories(
            ${package}::${package} SYSTEM INTERFACE ${${package}_INCLUDE}
        )
    endif()
endmacro()
