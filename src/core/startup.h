// The program from its first line to its last.
#pragma once

int StartGame(int argc, char **argv);  // The whole start-up, the run and the exit; 0 on every orderly end.
