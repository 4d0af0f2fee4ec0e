// The upload of a finished list into the two texture buffers.
#include "gl/link.h"

#include <GL/glew.h>

#include "core/log.h"
#include "gl/gl_check.h"
#include "gl/shaders.h"

static bool CutReported = false;  // drawing thread

// What the buffers take of so many floats: whole instances only.
static u32 CutToBuffers(u32 floats) {
  const u32 room = LocBufferBytes / 16 * 4;
  if (floats <= room) return floats;
  if (!CutReported) LogWarn("There are more voxels than the graphics buffers hold. I'm leaving the rest out.");
  CutReported = true;
  return room;
}

void GpuLink(VoxelList *list) {
  if (list->linked == 1) return;
  GlCheck("PreLink");
  const u32 floats = CutToBuffers(list->publishedCount);
  list->drawnCount = floats;
  glActiveTexture(GL_TEXTURE0);
  glBindBuffer(GL_TEXTURE_BUFFER, LocBuffer);
  glBufferSubData(GL_TEXTURE_BUFFER, 0, static_cast<GLsizeiptr>(floats) * 4, list->publishedLocations);
  glActiveTexture(GL_TEXTURE1);
  glBindBuffer(GL_TEXTURE_BUFFER, ColBuffer);
  glBufferSubData(GL_TEXTURE_BUFFER, 0, static_cast<GLsizeiptr>(floats), list->publishedColours);
  GlCheck("PostLink");
  list->linked = 1;
}
