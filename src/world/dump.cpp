// The debug dump.
#include "world/dump.h"

#include "core/log.h"
#include "platform/threads.h"
#include "world/cells.h"
#include "world/heat.h"
#include "world/lists.h"

static void PrintCounters(const Ship &ship, const CellAddress &a) {
  static constexpr struct {
    ListKind kind;
    const char *format;
  } rows[] = {{ListTemp, "Temp: %i   %i   %i    %i \n"}, {ListAnim, "Anim: %i   %i   %i    %i \n"},
              {ListDmg, "Dmg:  %i   %i   %i    %i \n"}, {ListRmv, "Rmv:  %i   %i   %i    %i \n"}};
  const MegaChunk &mega = ship.megaChunks.load()[a.mega];
  const SuperChunk &super = mega.children.load()[a.super];
  const Chunk &chunk = super.children.load()[a.chunk];
  PrintLine("     Ship Mega Super Chunk \n");
  for (const auto &row : rows)
    Print(row.format, static_cast<int>(CheckCount(ship.checks[row.kind])), static_cast<int>(CheckCount(mega.checks[row.kind])),
          static_cast<int>(CheckCount(super.checks[row.kind])), static_cast<int>(CheckCount(chunk.checks[row.kind])));
}

static void PrintLights(const GraphicBlock &g) {
  if (g.lightList == nullptr) return;
  Print("Light: %i %i \n", g.lightCount, static_cast<int>(g.lightId));
  PrintLine("X  Y  Z : R  G  B \n");
  for (int i = 0; i < g.lightCount; ++i) {
    const LightEntry &e = g.lightList[i];
    Print("%i %i %i : %i %i %i \n", e.dx, e.dy, e.dz, e.red, e.green, e.blue);
  }
}

static void PrintRecord(const GraphicBlock &g) {
  if (g.damageBits.load() != nullptr) LogInfo("Block has Damage Array");
  PrintLine("#  ID \n");
  if (g.cache != nullptr) Print("Cache: %i %i \n", g.cache->counts[OpaqueList], static_cast<int>(g.cacheId));
  PrintLights(g);
}

static void DumpCell(const CellAddress &a, const ChunkCells &cells, int x, int y, int z, const Ship &ship) {
  static const char *const names[] = {"ErrorVisible \n", "Visible\n", "NotVisible\n", "MaybeVisible\n"};
  const Block b = BlockFromHead(HeadOfCell(cells, a.block));
  Print("%ix, %iy, %iz : %i %i %i %i \n", x, y, z, a.mega, a.super, a.chunk, a.block);
  PrintLine("M  C  D  R \n");
  Print("%i %i %i %i \n", static_cast<int>(b.material), static_cast<int>(b.component), static_cast<int>(b.state),
        static_cast<int>(b.rotation));
  PrintRecord(*GraphicOf(cells, a.block));
  Print("Temp: %f \n", static_cast<double>(QuarterToDegrees(static_cast<u16>(b.temp))));
  PrintLine("*Checks*\n");
  Print("TempUnStable: %i \n", static_cast<int>(b.tempUnstable));
  PrintCounters(ship, a);
  PrintLine(names[cells.visibility[a.block] & 3]);
}

void DumpBlock(u16 x, u16 y, u16 z, const Ship &ship) {
  ScopedLock world(&WorldMutex);
  ScopedLock heat(&HeatMutex);
  if (x >= CellsPerAxis || y >= CellsPerAxis || z >= CellsPerAxis) {
    LogErrorAt(x, y, z, "Out of bounds. That's not good. What did you do?");
    return;
  }
  const CellAddress a = AddressOf(x, y, z);
  const MegaChunk *megas = ship.megaChunks.load();
  const SuperChunk *supers = megas == nullptr ? nullptr : megas[a.mega].children.load();
  Chunk *chunks = supers == nullptr ? nullptr : supers[a.super].children.load();
  ChunkCells *cells = chunks == nullptr ? nullptr : chunks[a.chunk].cells.load();
  if (supers == nullptr) LogError("No MegaChunk");
  else if (chunks == nullptr) LogError("No SuperChunk");
  else if (cells == nullptr) LogError("No Chunk");
  else if (!CellOccupied(*cells, a.block)) LogError("Damage wrong");
  else if (EnsureGraphics(cells, chunks[a.chunk]) == nullptr) LogError("Graphic block unallocated");
  else DumpCell(a, *cells, x, y, z, ship);
}
