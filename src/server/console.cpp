// list, say, kick, save, stop.
#include "server/console.h"

#include <poll.h>
#include <unistd.h>

#include "core/log.h"
#include "server/clients.h"
#include "server/server.h"
#include "server/streams.h"
#include "server/world.h"

constexpr size_t LongestLine = 4096;
constexpr int ReadsInAPass = 4;

static void Answer(const std::string &line) { PrintLine((line + "\n").c_str()); }

static void List() {
  Answer(std::to_string(PlayerCount()) + " of " + std::to_string(TheServerOptions.Players) + " players");
  for (const Client &c : Clients)
    if (!c.name.empty())
      Answer("  " + c.name + "  " + c.address + "  " + std::to_string(c.edits) + " edits, " + std::to_string(c.lines) + " lines");
  for (const std::string &stem : ShipStems()) Answer("  ship " + stem);
}

static void Kick(const std::string &name) {
  Client *client = FindClientByName(name);
  if (client != nullptr) DropClient(client, "kicked", LastWords);
  else Answer("nobody is called \"" + name + "\"");
}

void ConsoleLine(const std::string &line) {
  const size_t blank = line.find(' ');
  const std::string word = line.substr(0, blank);
  const std::string rest = blank == std::string::npos ? "" : line.substr(blank + 1);
  if (word == "list") List();
  else if (word == "say" && !rest.empty()) {
    Say("Server: " + rest);
    SayToAll("Server: " + Printable(rest, 255));
  } else if (word == "kick") Kick(rest);
  else if (word == "save") TellWhenSaved();
  else if (word == "stop") StopRequested = true;
  else if (!word.empty()) Answer("list | say TEXT | kick NAME | save | stop");
}

void ReadConsole() {
  static std::string pending;
  static bool open = true;
  pollfd input{STDIN_FILENO, POLLIN, 0};
  for (int i = 0; i < ReadsInAPass && open && poll(&input, 1, 0) > 0; ++i) {
    char bytes[512];
    const ssize_t count = read(STDIN_FILENO, bytes, sizeof bytes);
    open = count > 0;
    if (!open) return;
    pending.append(bytes, static_cast<size_t>(count));
    for (size_t end; (end = pending.find('\n')) != std::string::npos; pending.erase(0, end + 1))
      ConsoleLine(pending.substr(0, end));
    if (pending.size() > LongestLine) pending.clear();
  }
}
