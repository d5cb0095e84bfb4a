# SpeexDsp::SpeexDsp: the signal processing of Speex, which suppresses noise.
include(${CMAKE_CURRENT_LIST_DIR}/OneLibrary.cmake)
kelo_one_library(SpeexDsp speexdsp speex/speex_preprocess.h)
