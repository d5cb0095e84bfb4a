# The libraries besides Qt, and what there is not without the optional ones.

include(FeatureSummary)
find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)
find_package(nlohmann_json 3.11 REQUIRED)
pkg_check_modules(ESPEAK REQUIRED IMPORTED_TARGET espeak-ng)
pkg_check_modules(FLUIDSYNTH REQUIRED IMPORTED_TARGET fluidsynth>=2.3)
pkg_check_modules(PUGIXML REQUIRED IMPORTED_TARGET pugixml)
pkg_check_modules(RTMIDI REQUIRED IMPORTED_TARGET rtmidi)
pkg_check_modules(SPEEXDSP REQUIRED IMPORTED_TARGET speexdsp)
pkg_check_modules(SQLITE REQUIRED IMPORTED_TARGET sqlite3)
pkg_check_modules(ZIP REQUIRED IMPORTED_TARGET libzip)
pkg_check_modules(XCB REQUIRED IMPORTED_TARGET xcb)

pkg_check_modules(POCKETSPHINX IMPORTED_TARGET pocketsphinx)
pkg_check_modules(ALSA IMPORTED_TARGET alsa)
pkg_check_modules(PULSE IMPORTED_TARGET libpulse)
pkg_check_modules(SPEECHD IMPORTED_TARGET speech-dispatcher)
pkg_check_modules(SYSTEMD IMPORTED_TARGET libsystemd)
find_package(Qt6 QUIET COMPONENTS Multimedia)
add_feature_info(PocketSphinx POCKETSPHINX_FOUND "hearing the name and the requests")
add_feature_info(ALSA ALSA_FOUND "finding a piano at once that was pulled out and plugged in again")
add_feature_info(PulseAudio PULSE_FOUND "the microphone and the loudspeakers of a sound server")
add_feature_info(SpeechDispatcher SPEECHD_FOUND "the desktop's voices for the engine")
add_feature_info(Systemd SYSTEMD_FOUND "asking the system's broker to let sound go first")
add_feature_info(QtMultimedia Qt6Multimedia_FOUND "the microphone where there is no PulseAudio")

if(PULSE_FOUND)
    # It asks for _REENTRANT, which means nothing by now but would part us from shared headers.
    set_target_properties(PkgConfig::PULSE PROPERTIES INTERFACE_COMPILE_OPTIONS "")
endif()
if(POCKETSPHINX_FOUND)
    # Its file names folders that Debian does not have, and a library for recording.
    get_target_property(folders PkgConfig::POCKETSPHINX INTERFACE_INCLUDE_DIRECTORIES)
    set(present)
    foreach(folder IN LISTS folders)
        if(IS_DIRECTORY ${folder})
            list(APPEND present ${folder})
        endif()
    endforeach()
    get_target_property(libraries PkgConfig::POCKETSPHINX INTERFACE_LINK_LIBRARIES)
    list(FILTER libraries EXCLUDE REGEX sphinxad)
    set_target_properties(
        PkgConfig::POCKETSPHINX PROPERTIES
        INTERFACE_INCLUDE_DIRECTORIES "${present}"
        INTERFACE_LINK_LIBRARIES "${libraries}"
    )
    pkg_get_variable(models pocketsphinx modeldir)
    set(POCKETSPHINX_MODEL ${models}/en-us)
endif()
