# SpeexDsp::SpeexDsp: the signal processing of Speex, which suppresses noise.

find_path(SpeexDsp_INCLUDE speex/speex_preprocess.h)
find_library(SpeexDsp_LIBRARY speexdsp)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(SpeexDsp REQUIRED_VARS SpeexDsp_LIBRARY SpeexDsp_INCLUDE)

if(SpeexDsp_FOUND AND NOT TARGET SpeexDsp::SpeexDsp)
    add_library(SpeexDsp::SpeexDsp INTERFACE IMPORTED)
    target_link_libraries(SpeexDsp::SpeexDsp INTERFACE ${SpeexDsp_LIBRARY})
    target_include_directories(SpeexDsp::SpeexDsp SYSTEM INTERFACE ${SpeexDsp_INCLUDE})
endif()
