// tarnvale-server: a world that several games play in.
#include <csignal>
#include <cstdio>
#include <cstring>
#include <string>
#include <unistd.h>

#include "core/log.h"
#include "server/control.h"
#include "server/server.h"

static void OnSignal(int) { StopRequested = true; }

static void Usage(std::FILE *out) {
  std::fprintf(out,
               "usage: tarnvale-server [FOLDER]\n"
               "       tarnvale-server --send FOLDER LINE\n"
               "Serves the ships of FOLDER/saves (default: the present folder) to games on the network.\n"
               "FOLDER holds config/, saves/ and serveroptions, which is written with its defaults when missing.\n"
               "The log goes to standard output and to server.log; the five before it are server.log.old, .old2 to .old5.\n"
               "Ends in order on SIGTERM, SIGINT and \"stop\".\n"
               "  --send         gives LINE to the server that runs in FOLDER, prints its answers and ends with 0 when it is done\n"
               "  -h, --help     this text\n"
               "  --version      the version\n"
               "LINE, or on standard input: list | say TEXT | kick NAME | save | stop\n");
}

static int Send(int count, char **words) {
  std::string line;
  for (int i = 1; i < count; ++i) line.append(i == 1 ? "" : " ").append(words[i]);
  return SendToServer(words[0], line);
}

int main(int argc, char **argv) {
  GuardStreams();
  const char *word = argc > 1 ? argv[1] : ".";
  if (std::strcmp(word, "-h") == 0 || std::strcmp(word, "--help") == 0) return Usage(stdout), 0;
  if (std::strcmp(word, "--version") == 0) return std::puts("tarnvale-server 0.23.0"), 0;
  if (std::strcmp(word, "--send") == 0 && argc > 3) return Send(argc - 2, argv + 2);
  if (argc > 2 || word[0] == '-') return Usage(stderr), 2;
  if (chdir(word) != 0) return std::perror(word), 1;
  struct sigaction action{};
  action.sa_handler = OnSignal;
  sigaction(SIGTERM, &action, nullptr);
  sigaction(SIGINT, &action, nullptr);
  std::string why;
  if (!BeginServerLog(&why)) return std::fprintf(stderr, "%s\n", why.c_str()), 1;
  const bool started = StartServer();
  if (started) {
    RunServer();
    StopServer();
  }
  TellRepeats(true);
  return started ? 0 : 1;
}
