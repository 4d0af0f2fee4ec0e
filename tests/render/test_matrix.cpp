#include "render/matrix.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "gameplay/player.h"
#include "render/view.h"

using Vector4 = std::array<double, 4>;

static Vector4 Transform(const float (&m)[16], const Vector4 &v) {
  Vector4 out{};
  for (size_t r = 0; r < 4; r++)
    for (size_t c = 0; c < 4; c++) out[r] += static_cast<double>(m[4 * c + r]) * v[c];
  return out;
}

static void ExpectNear(const Vector4 &got, const Vector4 &wanted, const char *what) {
  for (size_t i = 0; i < 4; i++) EXPECT_NEAR(got[i], wanted[i], 1e-4) << what << ", part " << i;
}

TEST(Matrix, MovesTurnsAndProjectsPoints) {
  float m[16], a[16], b[16];
  Translation(a, 3, -4, 5);
  ExpectNear(Transform(a, {1, 1, 1, 1}), {4, -3, 6, 1}, "translation");
  RotationZ(b, 90);
  ExpectNear(Transform(b, {1, 0, 0, 1}), {0, 1, 0, 1}, "a quarter turn");
  MultiplyMatrices(a, b, m);
  ExpectNear(Transform(m, {1, 0, 0, 1}), {3, -3, 5, 1}, "the right one acts first");
  Ortho2D(m, 1024, 768);
  ExpectNear(Transform(m, {512, -384, 0, 1}), {1, -1, 0, 1}, "the corner of the screen");
  Perspective(m, 90, 2, 1, 100);
  const Vector4 nearCorner = Transform(m, {2, 1, -1, 1}), farCorner = Transform(m, {-200, -100, -100, 1});
  ExpectNear(nearCorner, {1, 1, -1, 1}, "corner of the near plane");
  ExpectNear(farCorner, {-100, -100, 100, 100}, "corner of the far plane");
}

// Whatever the angles, the camera turns the way that the player looks to -z and keeps what is level, level.
TEST(Matrix, CameraFollowsTheViewDirection) {
  for (const float pitch : {-90.0f, -37.0f, 0.0f, 12.0f, 90.0f})
    for (const float yaw : {-180.0f, -91.0f, 0.0f, 45.0f, 90.0f, 179.0f}) {
      Player player;
      player.pitch = pitch;
      player.yaw = yaw;
      const double p = pitch * M_PI / 180, y = yaw * M_PI / 180;
      Perspective(ProjectionMatrix, 75, 1.25f, 0.1f, 10000);
      FrameMatrices(player);
      ExpectNear(Transform(CameraRotation, {-sin(y) * cos(p), sin(p), -cos(y) * cos(p), 1}), {0, 0, -1, 1}, "ahead");
      ExpectNear(Transform(CameraRotation, {cos(y), 0, -sin(y), 1}), {1, 0, 0, 1}, "to the right");
      const Vector4 point{3, -2, 7, 1}, turned = Transform(CameraRotation, point);
      ExpectNear(Transform(ReadViewMatrix().matrix, point), Transform(ProjectionMatrix, turned), "what Parse reads");
    }
}
