#pragma once

/// Prints, per kind of command, how many this agent queued and how many the server has executed, to
/// standard output. Async-signal-safe; needs an `Agent`.
void printStatistics();

/// Handles SIGINT: prints the statistics and ends the process with status 0.
void sigintHandler(int signal);

/// Prints the usage line. Not called: a bad command line ends the program in silence.
void showHelp();

/// The end for a server that has died: says so, prints the statistics, ends the process with status
/// 0. Not called: the main loop just returns.
[[noreturn]] void terminate();
