# Pulse::Pulse: the client library of PulseAudio, whose protocol PipeWire serves too.

find_path(Pulse_INCLUDE pulse/thread-mainloop.h)
find_library(Pulse_LIBRARY pulse)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Pulse REQUIRED_VARS Pulse_LIBRARY Pulse_INCLUDE)

if(Pulse_FOUND AND NOT TARGET Pulse::Pulse)
    add_library(Pulse::Pulse INTERFACE IMPORTED)
    target_link_libraries(Pulse::Pulse INTERFACE ${Pulse_LIBRARY})
    target_include_directories(Pulse::Pulse SYSTEM INTERFACE ${Pulse_INCLUDE})
endif()
