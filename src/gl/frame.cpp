// One picture: the star box, then every voxel in one instanced draw call, then the hand-over to the 2D code.
#include "gl/frame.h"

#include <GL/glew.h>

#include "gl/gl_check.h"
#include "gl/init.h"
#include "gl/shaders.h"
#include "gl/star_box.h"

constexpr int StripLength = 14;

static void DrawBackground(const Player &player) {
  if (!LegacyGlAllowed) {
    glEnable(GL_DEPTH_TEST);  // the star box would have turned it on again
    return;
  }
  glUseProgram(0);
  glColor3f(0, 1, 1);
  glLoadIdentity();
  glRotatef(-player.pitch, 1, 0, 0);
  glRotatef(-player.yaw, 0, 1, 0);
  DrawStarBox();
}

static void DrawVoxels(const Player &player, u32 drawnCount) {
  glActiveTexture(GL_TEXTURE0);
  FrameMatrices(player);
  glBindVertexArray(VoxelArray);
  glUseProgram(MainProgram);
  glUniformMatrix4fv(ProjectionModelLocation, 1, GL_FALSE, ViewMatrix);
  glUniform3fv(CamLocLocation, 1, player.relativeLoc);
  glFrontFace(GL_CW);
  GlCheck("PostRenderPrep");
  if (drawnCount > 3 && glDrawElementsInstanced != nullptr)
    glDrawElementsInstanced(GL_TRIANGLE_STRIP, StripLength, GL_UNSIGNED_BYTE, nullptr, static_cast<GLsizei>(drawnCount / 4));
  GlCheck("Post3DRender");
}

static void HandOverTo2D() {
  glDisable(GL_DEPTH_TEST);
  if (LegacyGlAllowed) glDisable(GL_LIGHTING);
  glFrontFace(GL_CCW);
  glBindVertexArray(SquareArray);
  glUseProgram(Program2D);
}

void DrawFrame(const Player &player, const VoxelList &list) {
  const u32 drawnCount = list.drawnCount;
  GlCheck("PreRender");
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  DrawBackground(player);
  DrawVoxels(player, drawnCount);
  HandOverTo2D();
}
