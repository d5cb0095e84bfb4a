#pragma once

/// The program: reads the command line, then runs the display, the snapshots or the wake test.
/// Returns the process's exit status once it has ended.
extern "C" int zu_main(int argc, char **argv);
