// The two thread systems: two or four threads that poll the clock and run the pieces.
#pragma once

int RunQuadCoreSystem();  // Each returns 1 when QuitRequested was seen and all threads have ended.
int RunDualCoreSystem();
