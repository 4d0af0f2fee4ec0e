// The timed pieces of work. Each takes its timer and writes the next due time into it when it ends; one that finds its mutex
// busy leaves the timer alone and is tried again on the next pass.
#pragma once

#include <atomic>

#include "core/types.h"

extern std::atomic<bool> StartupGate;          // while true Render, Parse and GpuLink are skipped

struct ThrustSound {                           // SoundUpdates only
  u8 stage = 0;                                // 0 silent, 1 starting, 2 looping, 4 stopping
  double deadline = 0;
};
extern ThrustSound TheThrustSound;             // ThrustSoundStage and ThrustSoundDeadline

void RenderPiece(double *timer);
void GpuLinkPiece(double *timer);
void ParsePiece(double *timer);
void MiscPiece(double *timer);
void SoundUpdatesPiece(double *timer);
void OpsPiece(double *timer);
void NetworkPiece(double *timer);
void MovementPiece(double *timer);
void MoveBackendPiece(double *timer);
void SavePiece(double *timer);
void UpdateCurrentShip();                      // World mutex held: the ship that the player is in or nearest to.
