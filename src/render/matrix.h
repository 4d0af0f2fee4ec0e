// 4 x 4 matrices of 16 floats, column-major: m[4 c + r] is row r of column c.
#pragma once

void CameraRotationMatrix(float (&out)[16], float pitch, float yaw);  // Degrees.
void RotationZ(float (&out)[16], float degrees);
void Translation(float (&out)[16], float x, float y, float z);
void Perspective(float (&out)[16], float fovDegrees, float aspect, float nearPlane, float farPlane);
void Ortho2D(float (&out)[16], int screenWidth, int screenHeight);    // Origin in the middle, units are pixels.
void MultiplyMatrices(const float (&a)[16], const float (&b)[16], float (&out)[16]);  // out = a x b; out is neither.
