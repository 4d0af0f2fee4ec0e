// The camera as matrices: what the drawing thread makes for each frame, and the copy of it that Parse works from. The copy
// is a snapshot under a lock held only for copying, so that Parse never sees half a matrix.
#pragma once

struct Player;

// Drawing thread only. Matrices are column-major.
extern float ProjectionMatrix[16];  // perspective; set when the window changes its size
extern float Projection2D[16];      // pixels, origin in the middle; likewise
extern float CameraRotation[16];    // rebuilt each frame
extern float ViewMatrix[16];        // ProjectionMatrix x CameraRotation, rebuilt each frame

struct ViewSnapshot {
  float matrix[16] = {};  // ViewMatrix; zero until the first frame
};

void FrameMatrices(const Player &player);         // CameraRotation and ViewMatrix, stored for Parse. Drawing thread.
void StoreViewMatrix(const float (&matrix)[16]);  // Drawing thread.
ViewSnapshot ReadViewMatrix();                    // Any thread.
