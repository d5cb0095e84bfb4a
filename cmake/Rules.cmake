# What holds for all code of our own: warnings (errors on request), sanitizers on request.
# Link a target of ours with Kelo::Rules (privately) to have it.

add_library(kelo_rules INTERFACE)
add_library(Kelo::Rules ALIAS kelo_rules)
target_compile_options(
    kelo_rules INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow
                         $<$<BOOL:${KELO_WERROR}>:-Werror>
)
target_compile_definitions(
    kelo_rules
    INTERFACE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_NO_KEYWORDS
              QT_DISABLE_DEPRECATED_BEFORE=0x060400
)

if(KELO_SANITIZE)
    include(CheckLinkerFlag)
    # Lines are all that their reports need; the rest of what debuggers read takes long to write.
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all
                        -fno-omit-frame-pointer -O1 -g1)
    add_link_options(-fsanitize=address,undefined)
    # Half a hundred programs are linked; this one takes a third of the time. It warns of hundreds of
    # symbols where Clang's sanitizers are linked, as for the fuzz targets, which are few.
    if(NOT KELO_FUZZ)
        check_linker_flag(CXX -fuse-ld=gold KELO_LINKS_WITH_GOLD)
    endif()
    if(KELO_LINKS_WITH_GOLD)
        add_link_options(-fuse-ld=gold)
    endif()
    if(KELO_FUZZ)
        add_compile_options(-fsanitize=fuzzer-no-link) # what is fuzzed has to be built for it
    endif()
    # What Qt makes of QML is not ours to check; the other builds compile it.
    set(KELO_QML_OPTIONS NO_CACHEGEN)
endif()

# What Qt compiles from QML files into `target` cannot follow our warnings. Call it after
# qt_add_qml_module, in the same directory.
function(kelo_spare_generated target)
    get_target_property(sources ${target} SOURCES)
    list(FILTER sources INCLUDE REGEX "/qmlcache/.*\\.cpp$")
    set_source_files_properties(${sources} PROPERTIES COMPILE_OPTIONS -w)
endfunction()
