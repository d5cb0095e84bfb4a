# The libraries' headers are read once for many sources, where KELO_PRECOMPILE asks for it. A target
# made by kelo_header_set keeps one set of them; kelo_precompiled lets a target of ours use a set.
# Sources include what they use all the same; static analysis reads them without.
#
#   standard  the standard library (what uses it keeps its own: its flags differ)
#   core      Qt Core, and the above
#   quick     Qt Quick, and the above

option(KELO_PRECOMPILE "Read the libraries' headers once for many sources" OFF)

set(standard_headers
    <algorithm> <array> <atomic> <chrono> <cmath> <condition_variable> <cstdint> <deque>
    <filesystem> <fstream> <functional> <map> <memory> <mutex> <numeric> <optional> <random>
    <span> <string> <string_view> <thread> <utility> <variant> <vector>
)
set(core_headers <QtCore> ${standard_headers})
set(quick_headers <QtGui> <QtQml> <QtQuick> ${core_headers})

function(kelo_header_set name)
    if(NOT KELO_PRECOMPILE)
        return()
    endif()
    set(target kelo_${name}_headers)
    file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/${target}.cpp "")
    add_library(${target} OBJECT ${CMAKE_CURRENT_BINARY_DIR}/${target}.cpp)
    set_target_properties(${target} PROPERTIES AUTOMOC OFF AUTOUIC OFF AUTORCC OFF)
    target_link_libraries(${target} PRIVATE Kelo::Rules ${ARGN})
    target_precompile_headers(${target} PRIVATE ${${name}_headers})
endfunction()

function(kelo_precompiled target name)
    if(NOT KELO_PRECOMPILE)
        return()
    endif()
    if(TARGET kelo_${name}_headers)
        target_precompile_headers(${target} REUSE_FROM kelo_${name}_headers)
    else()
        target_precompile_headers(${target} PRIVATE ${${name}_headers})
    endif()
endfunction()
