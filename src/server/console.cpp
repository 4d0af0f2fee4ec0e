// list, say, kick, save, stop.
#include "server/console.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>

#include "core/log.h"
#include "server/clients.h"
#include "server/server.h"
#include "server/streams.h"
#include "server/world.h"

constexpr size_t LongestLine = 4096, LongestSaid = 255;
constexpr int ReadsInAPass = 4;

static void List(Asker asker) {
  Answer(asker, std::to_string(PlayerCount()) + " of " + std::to_string(TheServerOptions.Players) + " players");
  for (const Client &c : Clients)
    if (!c.name.empty())
      Answer(asker, "  " + c.name + "  " + c.address + "  " + std::to_string(c.edits) + " edits, " + std::to_string(c.lines) + " lines");
  for (const std::string &stem : ShipStems()) Answer(asker, "  ship " + stem);
}

static bool Kick(const std::string &name, Asker asker) {
  Client *client = FindClientByName(name);
  if (client != nullptr) DropClient(client, "kicked", LastWords);
  else Answer(asker, "nobody is called \"" + name + "\"");
  return client != nullptr;
}

static void SayAsServer(const std::string &text) {
  const std::string line = "Server: " + Printable(text, LongestSaid);
  Say(line);
  SayToAll(line);
}

static std::string Trimmed(const std::string &text) {
  constexpr const char *blanks = " \t\r";
  const size_t first = std::min(text.find_first_not_of(blanks), text.size());
  return text.substr(first, text.find_last_not_of(blanks) + 1 - first);
}

void ConsoleLine(const std::string &typed, Asker asker) {
  const std::string line = Trimmed(typed), word = line.substr(0, line.find_first_of(" \t")), rest = Trimmed(line.substr(word.size()));
  if (word == "save") return TellWhenSaved(asker);
  if (word == "stop") return StopAndTell(asker);
  bool known = true;
  if (word == "list") List(asker);
  else if (word == "say" && !rest.empty()) SayAsServer(rest);
  else if (word == "kick") known = Kick(rest, asker);
  else if (!word.empty()) {
    Answer(asker, "list | say TEXT | kick NAME | save | stop");
    known = false;
  }
  EndAnswer(asker, known);
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
