// What the function keys do.
#pragma once

bool DebugKey(int key);   // F1 to F12 on a press; false for any other key. Main thread.
extern double CacheResetAllowed;  // before this time F12 does nothing; main thread
