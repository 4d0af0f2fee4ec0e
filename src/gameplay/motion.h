// How the player moves: jets, grip, push-off, dampening and collisions. All work on the record given; the pieces read and
// store it with the move mutex held.
#pragma once

#include "gameplay/player.h"

constexpr i32 WorkSpeed = 25000;                           // above it the player is too fast to work with tools
constexpr int JetStart = 45, JetLoop = 46, JetStop = 47;   // sound slots of the jets
constexpr int JetSlots[] = {JetStart, JetLoop, JetStop};
i32 ToVelocity(double v);                                  // Cut to whole units; stops at the ends of i32.

// Velocity change collected by the held-input step; Movement adds it and the next step clears it. Only the thread of
// Movement touches it.
extern float accel[3];
extern bool wasStuck;  // MovePlayer found the player inside something on its last call. Movement's thread, move mutex.

enum class MoveKey : u8 { Forward, Backward, Left, Right, Up, Down };
constexpr MoveKey MoveKeys[] = {MoveKey::Forward, MoveKey::Backward, MoveKey::Left,
                                MoveKey::Right,   MoveKey::Up,       MoveKey::Down};  // the order of a tick

int BoundKey(MoveKey key);     // The key code that the options bind. Any thread.
bool IsMoveKey(int keyCode);   // Whether any of the six is bound to it. Any thread.
// The change that a force makes in accel for a key: the direction is against the motion, since places fall by velocity.
Vec3f MoveKeyDirection(const Player &p, MoveKey key);

void JetStep(Player *p, const Ship &ship);      // The Stop key and the six Move keys of one tick.
void ReleaseStop();                             // The Stop key came up: the grip lets go, the brake ends. Any thread.
float PushOffForce(const Player &p, const Ship &ship, MoveKey key);  // Velocity units; 0 with nothing to push against.
bool DampenStep(Player *p, float rate, i32 vx, i32 vy, i32 vz);  // Nearer to v by at most rate; true when arrived.
void MovePlayer(Player *p, const Ship &ship, float dx, float dy, float dz);  // Displacement in blocks, with collisions.
