# Static analysis reads one unit a folder, made of all its sources of `target`, so that the
# libraries' headers are read once a folder instead of once a file. The units are never built: they
# only stand among the compile commands, under analysis/ of the build folder. The sources of a
# folder may therefore not give one name to two things, not even in anonymous namespaces. Call it
# last, in the target's own directory.
function(kelo_analyse target)
    get_target_property(sources ${target} SOURCES)
    get_target_property(libraries ${target} LINK_LIBRARIES)
    list(FILTER sources INCLUDE REGEX "\\.cpp$")
    set(folders)
    foreach(source IN LISTS sources)
        cmake_path(ABSOLUTE_PATH source)
        cmake_path(IS_PREFIX CMAKE_BINARY_DIR ${source} generated)
        if(NOT generated)
            cmake_path(GET source PARENT_PATH folder)
            cmake_path(RELATIVE_PATH folder BASE_DIRECTORY ${CMAKE_SOURCE_DIR})
            string(REPLACE / _ folder ${folder})
            list(APPEND folders ${folder})
            string(APPEND ${folder} "#include \"${source}\"\n")
        endif()
    endforeach()
    list(REMOVE_DUPLICATES folders)
    set(units)
    foreach(folder IN LISTS folders)
        set(unit ${CMAKE_BINARY_DIR}/analysis/${folder}.cpp)
        file(CONFIGURE OUTPUT ${unit} @ONLY CONTENT
            "// NOLINTBEGIN(bugprone-suspicious-include)\n@${folder}@// NOLINTEND(bugprone-suspicious-include)\n"
        )
        list(APPEND units ${unit})
    endforeach()
    add_library(${target}_analysis OBJECT EXCLUDE_FROM_ALL ${units})
    set_target_properties(${target}_analysis PROPERTIES AUTOMOC OFF)
    target_link_libraries(${target}_analysis PRIVATE ${libraries})
    target_include_directories(${target}_analysis
        PRIVATE $<TARGET_PROPERTY:${target},INCLUDE_DIRECTORIES>)
    target_compile_definitions(${target}_analysis
        PRIVATE $<TARGET_PROPERTY:${target},COMPILE_DEFINITIONS>)
    target_compile_options(${target}_analysis PRIVATE -Wno-shadow) # of a neighbouring source
endfunction()
