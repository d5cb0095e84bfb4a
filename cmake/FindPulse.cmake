# Pulse::Pulse: the client library of PulseAudio, whose protocol PipeWire serves too.
include(${CMAKE_CURRENT_LIST_DIR}/OneLibrary.cmake)
kelo_one_library(Pulse pulse pulse/thread-mainloop.h)
