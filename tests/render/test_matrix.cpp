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
