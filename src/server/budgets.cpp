// The budgets of the addresses.
#include "server/budgets.h"

#include <enet/enet.h>

#include <algorithm>
#include <array>
#include <map>

namespace {

struct Pace {
  double most, perSecond;
};

constexpr Pace EditPace{200, 200}, LinePace{10, 2};             // of a player
constexpr Pace ConnectionPace{32, 2}, JoinPace{16, 0.5}, SlotPace{40, 10};  // of an address
constexpr Pace PresencePace{20, 2};                             // of everybody
constexpr Pace SlotTimePace{2, 0.2};                            // of everybody: seconds of the loop
constexpr double LongestRefill = 60;                            // seconds: no budget of an address takes longer to fill

struct AddressBudgets {
  Tokens connections, joins, slots;
  std::array<Seat, MostOfOneAddress> seats;
  double usedAt = 0;
};

using AddressKey = std::pair<u32, u16>;
std::map<AddressKey, AddressBudgets> Addresses;  // nobody keeps a pointer into it
Tokens Presence, SlotTime;

double Fill(Tokens *t, const Pace &pace, double now) {
  t->left = t->filled == 0 ? pace.most : std::min(pace.most, t->left + (now - t->filled) * pace.perSecond);
  t->filled = now;
  return t->left;
}

bool Spend(Tokens *t, const Pace &pace, double price, double now) {
  if (Fill(t, pace, now) < price) return false;
  t->left -= price;
  return true;
}

AddressBudgets *BudgetsOf(const ENetPeer *peer, double now) {
  AddressBudgets *a = &Addresses[{peer->address.host, OnThisMachine(peer) ? peer->address.port : u16{0}}];
  a->usedAt = now;
  return a;
}

// Whoever comes and goes to find full budgets finds the one that they have just emptied.
bool IsBetterSeat(const Seat &a, const Seat &b) { return !a.taken && (b.taken || a.leftAt > b.leftAt); }

Seat *SeatOf(const Client &client, double now) {
  return client.seat < 0 ? nullptr : &BudgetsOf(client.peer, now)->seats[static_cast<size_t>(client.seat)];
}

bool IsTaken(const Seat &seat) { return seat.taken; }

}  // namespace

bool OnThisMachine(const ENetPeer *peer) { return (ENET_NET_TO_HOST_32(peer->address.host) >> 24) == 127; }

bool HasFreeSeat(const ENetPeer *peer) {
  const auto &seats = BudgetsOf(peer, Now())->seats;
  return !std::all_of(seats.begin(), seats.end(), IsTaken);
}

bool TakeSeat(Client *client) {
  auto &seats = BudgetsOf(client->peer, Now())->seats;
  size_t best = 0;
  for (size_t i = 1; i < seats.size(); ++i)
    if (IsBetterSeat(seats[i], seats[best])) best = i;
  if (seats[best].taken) return false;
  seats[best].taken = true;
  client->seat = static_cast<int>(best);
  return true;
}

void LeaveSeat(Client *client) {
  const double now = Now();
  Seat *seat = SeatOf(*client, now);
  if (seat == nullptr) return;
  seat->taken = false;
  seat->leftAt = now;
  client->seat = -1;
}

bool SpendEdit(Client *client, double price, double now) {
  Seat *seat = SeatOf(*client, now);
  return seat != nullptr && Spend(&seat->edits, EditPace, price, now);
}

bool SpendLine(Client *client, double now) {
  Seat *seat = SeatOf(*client, now);
  return seat != nullptr && Spend(&seat->lines, LinePace, 1, now);
}

bool SpendConnection(const ENetPeer *peer, double now) { return Spend(&BudgetsOf(peer, now)->connections, ConnectionPace, 1, now); }

bool SpendJoin(const ENetPeer *peer, double now) { return Spend(&BudgetsOf(peer, now)->joins, JoinPace, 1, now); }

bool SpendPresence(double now) { return Spend(&Presence, PresencePace, 1, now); }

bool HasSlot(const ENetPeer *peer, double now) { return Fill(&BudgetsOf(peer, now)->slots, SlotPace, now) >= 1; }

void SpendSlot(const ENetPeer *peer) { BudgetsOf(peer, Now())->slots.left -= 1; }

bool HasSlotTime(double now) { return Fill(&SlotTime, SlotTimePace, now) > 0; }

void SpendSlotTime(double seconds) { SlotTime.left -= seconds; }

void ForgetFullBudgets(double now) {
  std::erase_if(Addresses, [now](const auto &entry) {
    const AddressBudgets &a = entry.second;
    return now - a.usedAt > LongestRefill && std::none_of(a.seats.begin(), a.seats.end(), IsTaken);
  });
}
