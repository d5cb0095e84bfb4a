# PocketSphinx::PocketSphinx, and PocketSphinx_MODEL: the folder of its English model.
# Its pkg-config file names a folder of headers that does not exist.

find_path(PocketSphinx_INCLUDE pocketsphinx.h PATH_SUFFIXES pocketsphinx)
find_path(PocketSphinx_BASE_INCLUDE sphinxbase/ngram_model.h)
find_path(PocketSphinx_BASE_CONFIG sphinx_config.h PATH_SUFFIXES sphinxbase)
find_library(PocketSphinx_LIBRARY pocketsphinx)
find_library(PocketSphinx_BASE_LIBRARY sphinxbase)
find_path(
    PocketSphinx_MODEL cmudict-en-us.dict PATH_SUFFIXES share/pocketsphinx/model/en-us
)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(
    PocketSphinx
    REQUIRED_VARS PocketSphinx_LIBRARY PocketSphinx_BASE_LIBRARY PocketSphinx_INCLUDE
                  PocketSphinx_BASE_INCLUDE PocketSphinx_BASE_CONFIG PocketSphinx_MODEL
)

if(PocketSphinx_FOUND AND NOT TARGET PocketSphinx::PocketSphinx)
    add_library(PocketSphinx::PocketSphinx INTERFACE IMPORTED GLOBAL)
    target_link_libraries(
        PocketSphinx::PocketSphinx INTERFACE ${PocketSphinx_LIBRARY} ${PocketSphinx_BASE_LIBRARY}
    )
    target_include_directories(
        PocketSphinx::PocketSphinx SYSTEM
        INTERFACE ${PocketSphinx_INCLUDE} ${PocketSphinx_BASE_INCLUDE} ${PocketSphinx_BASE_CONFIG}
    )
endif()
