// The control socket. A line of at most LongestLine bytes; then the answers, each a line; the last one is "= 0" when it was done
// and "= 1" when not. A sender who waits for a save hears of its end when the files are on disk.
#include "server/control.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <vector>

#include "core/log.h"
#include "core/utils.h"
#include "server/console.h"

namespace {

constexpr const char *SocketName = "server.control";
constexpr size_t LongestLine = 4096, MostAskers = 16, MostWaiting = 1 << 20;  // the last one in bytes of answers
constexpr double AskPatience = 10;       // seconds for the line to come, and for the last answer to be taken
constexpr int LastRounds = 100;          // milliseconds for a line that is on its way when the server ends
constexpr const char *Done = "= 0\n", *NotDone = "= 1\n";

struct Connection {
  Asker asker = Terminal;
  int socket = -1;
  std::string in, out;
  bool asked = false, ended = false;     // its line was taken; its last answer is in out
  double since = 0, endedAt = 0;         // when it came, and when its last answer was seen to be there
};

std::vector<Connection> Connections;
int Listener = -1;
Asker LastAsker = Terminal;

sockaddr_un SocketAddress() {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, SocketName, sizeof address.sun_path - 1);
  return address;
}

void RemoveSocket() {
  struct stat info;
  if (lstat(SocketName, &info) == 0 && S_ISSOCK(info.st_mode)) unlink(SocketName);
}

// Nobody else may even knock: the socket has its rights from the start. The folder's owner may be another one than the server's.
bool Bind() {
  const sockaddr_un address = SocketAddress();
  const mode_t before = umask(0177);
  const bool bound = bind(Listener, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
  umask(before);
  struct stat folder;
  if (bound && stat(".", &folder) == 0 && folder.st_uid != geteuid() && lchown(SocketName, folder.st_uid, folder.st_gid) != 0)
    LogWarn("Only the server's own user can use server.control");
  return bound && listen(Listener, static_cast<int>(MostAskers)) == 0;
}

bool MayAsk(int socket) {
  ucred peer{};
  socklen_t size = sizeof peer;
  struct stat folder;
  if (getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0) return false;
  return peer.uid == 0 || peer.uid == geteuid() || (stat(".", &folder) == 0 && peer.uid == folder.st_uid);
}

void TakeConnections(double now) {
  while (Connections.size() < MostAskers) {
    const int socket = accept4(Listener, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
    if (socket < 0) return;
    Connections.push_back({++LastAsker, socket, {}, {}, false, false, now, 0});
    if (MayAsk(socket)) continue;
    Connections.back().asked = true;
    Answer(Connections.back().asker, "only the owner of the folder may do that");
    EndAnswer(Connections.back().asker, false);
  }
}

// False: the other end is gone. What follows the line is of no meaning.
bool ReadAsked(Connection *c) {
  char bytes[LongestLine];
  const ssize_t count = recv(c->socket, bytes, sizeof bytes, 0);
  if (count < 0) return errno == EAGAIN || errno == EINTR;
  if (count == 0) return c->asked;  // it may still listen
  if (!c->asked) c->in.append(bytes, static_cast<size_t>(count));
  return true;
}

// Answers of the line may be looked for by its asker only: the line itself may move the connections.
void Ask(size_t at) {
  const Asker asker = Connections[at].asker;
  const size_t end = Connections[at].in.find('\n');
  if (end == std::string::npos && Connections[at].in.size() <= LongestLine) return;
  const std::string line = Connections[at].in.substr(0, end);
  Connections[at].asked = true;
  Connections[at].in.clear();
  if (line.size() <= LongestLine) return ConsoleLine(line, asker);
  Answer(asker, "the line is too long");
  EndAnswer(asker, false);
}

bool SendWaiting(Connection *c) {
  const ssize_t sent = c->out.empty() ? 0 : send(c->socket, c->out.data(), c->out.size(), MSG_NOSIGNAL);
  if (sent < 0) return errno == EAGAIN || errno == EINTR;
  c->out.erase(0, static_cast<size_t>(sent));
  return true;
}

bool IsOver(const Connection &c, double now) {
  if (c.ended && c.out.empty()) return true;
  return c.ended ? now - c.endedAt > AskPatience : !c.asked && now - c.since > AskPatience;
}

Connection *Find(Asker asker) {
  const auto found = std::find_if(Connections.begin(), Connections.end(), [asker](const Connection &c) { return c.asker == asker; });
  return found == Connections.end() ? nullptr : &*found;
}

// Prints what comes. The status behind the last answer, or 1 when the server went away before it.
int PrintAnswers(int socket) {
  std::string text;
  char bytes[4096];
  for (ssize_t count; (count = recv(socket, bytes, sizeof bytes, 0)) > 0;) {
    text.append(bytes, static_cast<size_t>(count));
    for (size_t end; (end = text.find('\n')) != std::string::npos; text.erase(0, end + 1)) {
      const std::string line = text.substr(0, end + 1);
      if (line == Done || line == NotDone) return line == Done ? 0 : 1;
      std::fputs(line.c_str(), stdout);
      std::fflush(stdout);
    }
  }
  std::fputs("The server went away before it was done\n", stderr);
  return 1;
}

}  // namespace

void OpenControl() {
  Listener = socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  RemoveSocket();
  if (Listener >= 0 && Bind()) return;
  LogWarn("server.control can't be made: the server has no commands but those on its terminal");
  if (Listener >= 0) close(Listener);
  Listener = -1;
}

void PollControl(double now) {
  if (Listener < 0) return;
  TakeConnections(now);
  for (size_t i = 0; i < Connections.size(); ++i) {
    bool there = ReadAsked(&Connections[i]);
    if (there && !Connections[i].asked) Ask(i);
    Connection &c = Connections[i];
    if (c.ended && c.endedAt == 0) c.endedAt = now;
    there = there && SendWaiting(&c) && c.out.size() <= MostWaiting;
    if (there && !IsOver(c, now)) continue;
    close(c.socket);
    Connections.erase(Connections.begin() + static_cast<std::ptrdiff_t>(i--));
  }
}

void TakeLastLines(double now) {
  const auto isAsked = [](const Connection &c) { return c.asked; };
  for (int round = 0; round < LastRounds; ++round) {
    PollControl(now);
    if (std::all_of(Connections.begin(), Connections.end(), isAsked)) return;
    poll(nullptr, 0, 1);
  }
}

void CloseControl() {
  if (Listener < 0) return;
  for (Connection &c : Connections) {
    SendWaiting(&c);
    close(c.socket);
  }
  Connections.clear();
  close(Listener);
  Listener = -1;
  RemoveSocket();
}

void Answer(Asker asker, const std::string &text) {
  std::string line = text;
  ReplaceControls(line.data());
  line.resize(std::strlen(line.c_str()));
  if (asker == Terminal) return PrintLine((line + "\n").c_str());
  if (Connection *c = Find(asker); c != nullptr && !c->ended) c->out += line + "\n";
}

void EndAnswer(Asker asker, bool done) {
  Connection *c = Find(asker);
  if (c == nullptr || c->ended) return;
  c->out += done ? Done : NotDone;
  c->ended = true;
}

int SendToServer(const char *folder, const std::string &line) {
  const bool isLine = line.find_first_not_of(" \t") != std::string::npos && line.size() <= LongestLine && line.find('\n') == std::string::npos;
  if (!isLine) return std::fputs("That is no line\n", stderr), 2;
  if (chdir(folder) != 0) return std::perror(folder), 1;
  const sockaddr_un address = SocketAddress();
  const int server = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (server < 0 || connect(server, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0) {
    const bool refused = errno == EACCES || errno == EPERM;
    std::fprintf(stderr, refused ? "Only the owner of %s may do that\n" : "No server runs in %s\n", folder);
    return 1;
  }
  const std::string asked = line + "\n";
  send(server, asked.data(), asked.size(), MSG_NOSIGNAL);
  const int status = PrintAnswers(server);
  close(server);
  return status;
}
