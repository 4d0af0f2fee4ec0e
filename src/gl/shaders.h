// The two programs, the cube, the 2D square and the texture buffers of the instances. Main thread.
#pragma once

#include "core/types.h"

// Written once by InitShaders and Init2DShaders.
extern u32 MainProgram, Program2D;
extern u32 VoxelArray, SquareArray;        // vertex arrays of the two programs
extern u32 SquareBuffer;                   // stays bound to GL_ARRAY_BUFFER; filled before each square is drawn
extern u32 LocBuffer, LocTexture;          // unit 0: place and scale of every instance, 4 floats
extern u32 ColBuffer, ColTexture;          // unit 1: its colour, 4 bytes
extern i32 MaxTextureBufferSize;           // from the driver
extern i32 ProjectionModelLocation, CamLocLocation;
extern u32 LocBufferBytes;                 // size of LocBuffer; ColBuffer has a quarter

int InitShaders();                         // Non-zero on success.
int Init2DShaders();                       // 1 on success.
void TextureBufferInit();
char *LoadShaderFile(const char *path, int *length);  // malloc'ed text without the '@' tails; null: no such file (logged).
u32 CompileShader(u32 stage, const char *path);       // 0 on failure (logged).
u32 LinkProgram(const u32 (&shaders)[2]);             // 0 on failure (logged, unless a shader is 0).
u32 InstanceBufferBytes(u32 maxTextureBufferSize);    // The size of LocBuffer for a driver's limit; may lower MaxVoxels.
