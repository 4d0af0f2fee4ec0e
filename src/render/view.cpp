// The camera's matrices, and the snapshot of them for Parse.
#include "render/view.h"

#include <algorithm>
#include <mutex>

#include "gameplay/player.h"
#include "render/matrix.h"

float ProjectionMatrix[16], Projection2D[16], CameraRotation[16], ViewMatrix[16];

static std::mutex SnapshotGuard;
static ViewSnapshot Snapshot;  // under SnapshotGuard

void FrameMatrices(const Player &player) {
  CameraRotationMatrix(CameraRotation, player.pitch, player.yaw);
  MultiplyMatrices(ProjectionMatrix, CameraRotation, ViewMatrix);
  StoreViewMatrix(ViewMatrix);
}

void StoreViewMatrix(const float (&matrix)[16]) {
  const std::lock_guard<std::mutex> held(SnapshotGuard);
  std::copy_n(matrix, 16, Snapshot.matrix);
}

ViewSnapshot ReadViewMatrix() {
  const std::lock_guard<std::mutex> held(SnapshotGuard);
  return Snapshot;
}
