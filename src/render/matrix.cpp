// The few 4 x 4 matrices that a picture needs.
#include "render/matrix.h"

#include <algorithm>
#include <cmath>

constexpr float RadiansPerDegree = 0.017453292f, HalfRadiansPerDegree = 0.008726646f;

void CameraRotationMatrix(float (&out)[16], float pitch, float yaw) {
  const float p = -pitch * RadiansPerDegree, q = -yaw * RadiansPerDegree;
  const float sinP = std::sin(p), cosP = std::cos(p), sinQ = std::sin(q), cosQ = std::cos(q);
  const float columns[16] = {cosQ, sinQ * sinP,  -sinQ * cosP, 0, 0, cosP, sinP, 0,  //
                             sinQ, -sinP * cosQ, cosP * cosQ,  0, 0, 0,    0,    1};
  std::copy_n(columns, 16, out);
}

void RotationZ(float (&out)[16], float degrees) {
  const float a = -degrees * RadiansPerDegree;
  std::fill_n(out, 16, 0.0f);
  out[0] = out[5] = std::cos(a);
  out[4] = std::sin(a);
  out[1] = -out[4];
  out[10] = out[15] = 1;
}

void Translation(float (&out)[16], float x, float y, float z) {
  const float columns[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, x, y, z, 1};
  std::copy_n(columns, 16, out);
}

void Perspective(float (&out)[16], float fovDegrees, float aspect, float nearPlane, float farPlane) {
  const float t = std::tan(HalfRadiansPerDegree * fovDegrees) * nearPlane;
  std::fill_n(out, 16, 0.0f);
  out[0] = (nearPlane + nearPlane) / ((aspect + aspect) * t);
  out[5] = (nearPlane + nearPlane) / (t + t);
  out[10] = -(farPlane + nearPlane) / (farPlane - nearPlane);
  out[11] = -1;
  out[14] = (-2 * nearPlane * farPlane) / (farPlane - nearPlane);
}

void Ortho2D(float (&out)[16], int screenWidth, int screenHeight) {
  std::fill_n(out, 16, 0.0f);
  out[0] = 2 / static_cast<float>(screenWidth);
  out[5] = 2 / static_cast<float>(screenHeight);
  out[10] = -1;
  out[15] = 1;
}

void MultiplyMatrices(const float (&a)[16], const float (&b)[16], float (&out)[16]) {
  for (int c = 0; c < 4; c++)
    for (int r = 0; r < 4; r++) {
      float sum = 0;
      for (int k = 0; k < 4; k++) sum += a[4 * k + r] * b[4 * c + k];
      out[4 * c + r] = sum;
    }
}
