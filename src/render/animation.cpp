// Animation frames of a block.
#include "render/animation.h"

#include <new>

#include "content/components.h"
#include "core/log.h"

constexpr u8 TimerBits = 0x7f, LoopsBack = 0x80;

// From the first frame on, every timer starts again.
static void RestartRing(GraphicBlock *first) {
  for (GraphicBlock *frame = first; frame != nullptr; frame = frame->lodNext) {
    frame->frameTimer = frame->frameLength & TimerBits;
    if ((frame->frameLength & LoopsBack) != 0) return;
  }
}

GraphicBlock *CurrentFrame(GraphicBlock *graphic) {
  GraphicBlock *frame = graphic;
  while (frame->cache != nullptr && (frame->frameLength & TimerBits) != 0) {
    if (frame->frameTimer > 0) {
      --frame->frameTimer;
      return frame;
    }
    if (frame->lodNext == nullptr) return frame;  // an unfinished ring ends here
    const bool last = (frame->frameLength & LoopsBack) != 0;
    frame = frame->lodNext;
    if (last) RestartRing(frame);
  }
  return frame->cache == nullptr ? nullptr : frame;
}

void FreeFrames(GraphicBlock *graphic) {
  if (graphic->lodNext != nullptr && (graphic->frameLength & LoopsBack) == 0) {
    FreeCacheRecord(graphic->lodNext);
    delete graphic->lodNext;
  }
  graphic->lodNext = nullptr;
}

static void SetTimers(GraphicBlock *graphic, u8 length, u8 timer) {
  graphic->frameLength = length;
  graphic->frameTimer = timer;
}

// A later frame shares the light list and the damage of the first and owns neither.
static GraphicBlock *NewFrame(const GraphicBlock &from) {
  GraphicBlock *frame = new (std::nothrow) GraphicBlock;
  if (frame == nullptr) return nullptr;
  frame->lightCount = from.lightCount;
  frame->lightList = from.lightList;
  frame->lightId = from.lightId;
  frame->cacheId = from.cacheId;
  frame->damageBits.store(from.damageBits.load(std::memory_order_relaxed), std::memory_order_relaxed);
  frame->x = from.x;
  frame->y = from.y;
  frame->z = from.z;
  return frame;
}

bool PrepareNextFrame(GraphicBlock *graphic, u16 component, GraphicBlock *ringHead, GraphicBlock **next) {
  *next = nullptr;
  const Component &c = Components[component];
  const u8 delay = c.frameDelay & TimerBits;
  if (c.frameStep == 0 || (c.frameStep < 0 && ringHead == nullptr)) {
    SetTimers(graphic, 0, TimerBits);
    return true;
  }
  SetTimers(graphic, delay, delay);
  if (c.frameStep < 0) {
    graphic->frameLength |= LoopsBack;
    graphic->lodNext = ringHead;
    return true;
  }
  if (component + c.frameStep >= ComponentCount) return true;  // the table ends in the middle of the ring
  *next = graphic->lodNext = NewFrame(*graphic);
  return *next != nullptr || LogError("Could not allocate animation cache.") != 0;
}
