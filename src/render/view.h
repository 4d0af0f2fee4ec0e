// The camera as the drawing thread last saw it. A snapshot under a lock held only for the copy, so that Parse never sees
// half a matrix.
#pragma once

struct ViewSnapshot {
  float matrix[16] = {};  // projection x camera rotation, column-major; zero until the first frame
};

void StoreViewMatrix(const float (&matrix)[16]);  // Drawing thread.
ViewSnapshot ReadViewMatrix();                    // Any thread.
