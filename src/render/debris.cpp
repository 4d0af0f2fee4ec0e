// Debris of explosions, markers of debug traces, and the figures of other players.
#include "render/debris.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <random>

#include "content/components.h"
#include "content/materials.h"
#include "content/options.h"
#include "core/log.h"
#include "net/session.h"
#include "platform/threads.h"

constexpr u32 DebrisStep = 4096;      // records by which the list grows and shrinks
constexpr u32 DebrisMargin = 4;       // places that stay free
constexpr u32 MostPieces = 1 << 20;   // of one explosion, whatever the settings say
constexpr float DebrisScale = 0.7f;
constexpr u8 MarkerLife = 120;

// The pieces that are alive, oldest first. World mutex.
static struct {
  Debris *pieces = nullptr;
  u32 count = 0, capacity = 0;
} DebrisList;

static bool SetCapacity(u32 capacity) {
  void *resized = std::realloc(DebrisList.pieces, size_t{capacity} * sizeof(Debris));
  if (resized == nullptr) return LogError("Could not allocate debris") != 0;
  DebrisList.pieces = static_cast<Debris *>(resized);
  DebrisList.capacity = capacity;
  return true;
}

static bool RoomForPieces(u32 more) {
  u32 capacity = DebrisList.capacity;
  while (capacity < DebrisList.count + more + DebrisMargin) capacity += DebrisStep;
  return capacity == DebrisList.capacity || SetCapacity(capacity);
}

void InitDebris() {
  DebrisList.count = 0;
  SetCapacity(DebrisStep);
}

u32 DebrisCount() { return DebrisList.count; }
u32 DebrisCapacity() { return DebrisList.capacity; }
const Debris *DebrisAt(u32 i) { return DebrisList.pieces + i; }

static u32 PiecesOf(int count) {
  const float pieces = static_cast<float>(count) * Options.ExplosionScale;
  return pieces >= 1 ? static_cast<u32>(std::min(pieces, static_cast<float>(MostPieces))) : 0;
}

void SpawnDebris(float x, float y, float z, int count, u8 life, u16 material) {
  const u32 pieces = PiecesOf(count);
  if (!RoomForPieces(pieces)) return;
  std::minstd_rand generator(static_cast<u32>(std::time(nullptr)));
  const auto draw = [&] { return static_cast<float>(generator() >> 8 & 0x7fff); };  // 0 to 32767
  const auto offset = [&] { return draw() * (2.0f / 32768.0f); };
  const Material &m = Materials[material];
  for (u32 i = 0; i < pieces; ++i) {
    Debris *d = &DebrisList.pieces[DebrisList.count++];
    d->x = x + offset();
    d->y = y + offset();
    d->z = z + offset();
    const float k = (draw() * 0.0065614795f + 40.0f) * 0.003921569f;
    d->red = static_cast<u8>(static_cast<float>(m.red) * k);
    d->green = static_cast<u8>(static_cast<float>(m.green) * k);
    d->blue = static_cast<u8>(static_cast<float>(m.blue) * k);
    d->life = life;
  }
}

void SpawnColouredMarker(float x, float y, float z, u8 r, u8 g, u8 b) {
  const ScopedLock held(&WorldMutex);
  if (RoomForPieces(1)) DebrisList.pieces[DebrisList.count++] = {x, y, z, r, g, b, MarkerLife};
}

void SpawnMarker(float x, float y, float z) { SpawnColouredMarker(x, y, z, 255, 255, 255); }

void AgeDebris() {
  u32 kept = 0;
  for (u32 i = 0; i < DebrisList.count; ++i) {
    Debris piece = DebrisList.pieces[i];
    if (piece.life == 0) continue;
    --piece.life;
    DebrisList.pieces[kept++] = piece;
  }
  DebrisList.count = kept;
  u32 capacity = DebrisList.capacity;
  while (capacity > DebrisList.count + DebrisStep) capacity -= DebrisStep;
  if (capacity != DebrisList.capacity) SetCapacity(capacity);
}

static void Emit(VoxelList *list, const float (&location)[4], const u8 (&colour)[4]) {
  std::memcpy(list->locations + list->count, location, sizeof location);
  std::memcpy(list->colours + list->count, colour, sizeof colour);
  list->count += 4;
}

// Pieces fade out over the last three quarters of an explosion's time.
static u8 FadedAlpha(u8 life, float fade) {
  const float left = static_cast<float>(life);
  return left < 0.75f * fade ? static_cast<u8>(left / fade * 255.0f) : 255;
}

void EmitDebris(VoxelList *list) {
  const u32 needed = DebrisList.count * 4;
  if (ArrayCapacity < u64{list->count} + needed && !GrowArrays(list, std::max(needed, ArrayStep))) return;
  const float fade = Options.ExplosionFade;
  for (u32 i = 0; i < DebrisList.count; ++i) {
    const Debris &d = DebrisList.pieces[i];
    Emit(list, {d.x, d.y, d.z, DebrisScale}, {d.red, d.green, d.blue, FadedAlpha(d.life, fade)});
  }
}

// A figure stands by a mapping of its own: x along the first part of the index, up along the third.
static void EmitFigure(VoxelList *list, const VoxelFacts &figure, const float (&at)[3]) {
  for (size_t i = 0; i < figure.drawn.size(); ++i) {
    const unsigned v = figure.drawn[i];
    const u32 colour = figure.drawnColours[i];
    const float x = at[0] + static_cast<float>(v >> 8) * 0.0625f, y = at[1] + static_cast<float>(v & 15) * 0.0625f,
                z = at[2] + 0.9375f - static_cast<float>(v >> 4 & 15) * 0.0625f;
    Emit(list, {x, y, z, 1.0f}, {static_cast<u8>(colour), static_cast<u8>(colour >> 8), static_cast<u8>(colour >> 16), 255});
  }
}

void EmitRemotePlayers(VoxelList *list) {
  const VoxelFacts *figure = Components[RemotePlayerComponent].facts.get();
  if (figure == nullptr) return;
  for (size_t row = 0; row < RemotePlayers.size(); ++row)
    if (row != OwnPlayerRow && list->count / 4 < Options.MaxVoxels && MakeRoomStep(list)) EmitFigure(list, *figure, RemotePlayers[row].relativeLoc);
}
