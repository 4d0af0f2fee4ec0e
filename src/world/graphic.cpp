// Freeing what hangs on a cell's record.
#include "world/graphic.h"

#include <cstdlib>

static void FreeLists(GraphicBlock *g) {
  g->cacheDirty = false;
  std::free(g->cache);
  g->cache = nullptr;
  g->cacheState[0] = 0;
}

void FreeCacheRecord(GraphicBlock *g) {
  FreeLists(g);
  GraphicBlock *frame = g;
  while (frame->lodNext != nullptr && (frame->frameLength & 0x80) == 0) {
    GraphicBlock *next = frame->lodNext;
    FreeLists(next);
    if (frame != g) delete frame;
    frame = next;
  }
  if (frame != g) {
    delete frame;
    g->lodNext = nullptr;
  }
}

void FreeGraphic(GraphicBlock *g) {
  FreeCacheRecord(g);
  std::free(g->lightList);
  g->lightList = nullptr;
  g->lightCount = 0;
  std::free(g->damageBits.exchange(nullptr));
}
