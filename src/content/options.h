// The settings of the game: "config/text/options" over a table of defaults. Every value may be read by any thread at any
// time and is written by the main thread (start-up, menus, debug keys), so each one is an atomic of its own.
#pragma once

#include <atomic>
#include <string>

#include "core/types.h"

struct Controls {  // key codes of the window layer; the last three are mouse buttons
  std::atomic<int> use{69}, blockSelect{81}, moveForward{87}, moveBackward{83}, moveLeft{65}, moveRight{68},
      moveUp{90}, moveDown{88}, stop{32}, mainMouse{0}, secondaryMouse{1}, thirdMouse{2};
};

struct OptionValues {
  std::atomic<u8> AntiAliasing{2};
  std::atomic<bool> FullScreen{false};
  std::atomic<u16> ScreenWidth{1024}, ScreenHeight{768};
  std::atomic<bool> InvertMouse{true};
  std::atomic<u8> FOV{75};
  std::atomic<bool> FrustumCull{false}, Tutorial{true}, ShowReticle{true}, ThreadedInput{false}, ExplosionBounce{true};
  std::atomic<u8> ExplosionFade{12};
  std::atomic<u16> HighResDiameter{100}, MidResDiameter{900}, LowResDiameter{1000};
  std::atomic<u16> HighResBlocks{1000}, MidResBlocks{3000}, LowResBlocks{9000};
  std::atomic<bool> ExperimentalLight{false}, Flashlight{true}, Crosshair{true}, HighQualityTransparency{true},
      HighQualityFlashlight{false};
  std::atomic<u8> TargetFPS{25};
  std::atomic<bool> MesaGPU{false}, DisableSound{false};
  std::atomic<u8> DistanceScale{1};
  std::atomic<u32> MaxSpeed{0};
  std::atomic<bool> SinglePlayer{true}, EightCache{true}, QuadCache{true};
  std::atomic<u32> MaxVoxels{1000000};
  std::atomic<bool> LevelOfDetail{true};
  std::atomic<u16> CachePerFrame{75};
  std::atomic<bool> StealCpu{false};
  std::atomic<float> MouseSensitivity{0.05f}, GuiScaleX{0.5f}, GuiScaleY{0.5f}, SoundVolume{1.0f}, MusicVolume{0.7f},
      InertialDampening{1.0f}, ExplosionScale{4.0f};
  std::string Language = "english", PlayerName = "Unknown", ServerURL = "localhost";  // main thread only
  Controls controls;
  // Running values that the file does not hold.
  std::atomic<bool> flashlightLit{false};  // what the Flashlight option becomes once play starts: off
};

extern OptionValues Options;

// Whether the file's Flashlight value is kept apart from the running one: SaveOptions writes Options.Flashlight.
bool LoadOptions();      // Defaults, then the file, then the file written again. False: no file read, or none written.
bool ReadOptionsFile();  // False when the file could not be opened; each fault in it is logged and reading goes on.
bool SaveOptions();      // Replaces the file. False when it could not be written, or nothing is saved; the old one stays.
void ResetOptions();     // Every default.

// Running flags that several threads look at. Writers: debug keys and menus on the main thread.
extern std::atomic<bool> LogSlowPieces;     // log pieces that take over 4 ms
extern std::atomic<bool> CollisionsOn;      // the player's body meets blocks
extern std::atomic<bool> CinematicCamera;   // slow view, no HUD; see-through blocks hide nothing
extern std::atomic<bool> HudVisible;
extern std::atomic<bool> ResizePending;     // the projection must be built again before the next frame
