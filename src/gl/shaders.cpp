// The two programs and the buffers that they draw from. Every voxel on screen is an instance of one small cube, whose
// place, scale and colour the vertex shader reads from two texture buffers by the number of the instance.
#include "gl/shaders.h"

#include <GL/glew.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "content/options.h"
#include "core/log.h"
#include "gl/gl_check.h"

constexpr int FirstTextBytes = 1024, MaxTextBytes = 1 << 20;
constexpr u32 UsualBufferBytes = 33000000, UsualMaxVoxels = 2000000;
constexpr const char *NoVertexArrays = "Glew failed to find VAO support. Please contact Merrowin.";

constexpr float Half = 0.03125f;  // half of a voxel's edge, in blocks
static constexpr float CubeVertices[11][3] = {
    {Half, Half, Half},   {Half, -Half, Half},   {-Half, -Half, Half},   {-Half, Half, Half},
    {Half, Half, -Half},  {Half, -Half, -Half},  {-Half, -Half, -Half},  {-Half, Half, -Half},
    {Half, Half, Half},   {Half, -Half, -Half},  {-Half, -Half, Half},  // 0, 5 and 2 again
};
static constexpr u8 CubeStrip[14] = {3, 7, 6, 9, 10, 1, 0, 5, 4, 7, 8, 3, 2, 6};

u32 MainProgram, Program2D, VoxelArray, SquareArray, SquareBuffer;
u32 LocBuffer, LocTexture, ColBuffer, ColTexture;
i32 MaxTextureBufferSize;
i32 ProjectionModelLocation, CamLocLocation;
u32 LocBufferBytes;

static u32 CubeIndexBuffer, CubeVertexBuffer;

static void PointCubeAttribute() {
  const int attribute = glGetAttribLocation(MainProgram, "CubeVertices");
  glVertexAttribPointer(static_cast<GLuint>(attribute), 3, GL_FLOAT, GL_FALSE, 0, nullptr);
}

static void BuildCube() {
  glGenBuffers(1, &CubeIndexBuffer);
  glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, CubeIndexBuffer);
  glBufferData(GL_ELEMENT_ARRAY_BUFFER, sizeof CubeStrip, CubeStrip, GL_STATIC_DRAW);
  GlCheck("InitShaders IBO");
  glGenBuffers(1, &CubeVertexBuffer);
  glBindBuffer(GL_ARRAY_BUFFER, CubeVertexBuffer);
  glBufferData(GL_ARRAY_BUFFER, sizeof CubeVertices, CubeVertices, GL_STATIC_DRAW);
  GlCheck("InitShaders Bind VBO");
  PointCubeAttribute();
  GlCheck("InitShaders VertexAttribPointer");
  glEnableVertexAttribArray(static_cast<GLuint>(glGetAttribLocation(MainProgram, "CubeVertices")));
  GlCheck("InitShaders VertexAttribArray1");
}

static void SetMainUniforms() {
  glUniform1i(glGetUniformLocation(MainProgram, "LocTexture"), 0);
  GlCheck("InitShaders Uniforms1");
  glUniform1i(glGetUniformLocation(MainProgram, "ColTexture"), 1);
  GlCheck("InitShaders Uniforms2");
  ProjectionModelLocation = glGetUniformLocation(MainProgram, "ProjectionModel");
  GlCheck("InitShaders CamLoc1");
  CamLocLocation = glGetUniformLocation(MainProgram, "CamLoc");
  GlCheck("InitShaders CamLoc2");
  glUseProgram(MainProgram);
  GlCheck("InitShaders use 2");
}

// The texture state that every frame finds.
static void BindInstanceTextures() {
  glActiveTexture(GL_TEXTURE0);
  GlCheck("InitShaders Bind1");
  glBindBuffer(GL_ARRAY_BUFFER, CubeVertexBuffer);
  GlCheck("InitShaders Bind2");
  glBindBuffer(GL_TEXTURE_BUFFER, LocBuffer);
  GlCheck("InitShaders Bind3");
  glBindTexture(GL_TEXTURE_BUFFER, LocTexture);
  GlCheck("InitShaders Bind4");
  PointCubeAttribute();
  GlCheck("InitShaders Bind5");
  glActiveTexture(GL_TEXTURE1);
  GlCheck("InitShaders Bind6");
  glBindBuffer(GL_TEXTURE_BUFFER, ColBuffer);
  GlCheck("InitShaders Bind7");
  glBindTexture(GL_TEXTURE_BUFFER, ColTexture);
  GlCheck("InitShaders Bind8");
}

static u32 BuildProgram(const char *vertexPath, const char *fragmentPath) {
  const u32 shaders[2] = {CompileShader(GL_VERTEX_SHADER, vertexPath), CompileShader(GL_FRAGMENT_SHADER, fragmentPath)};
  return LinkProgram(shaders);
}

int InitShaders() {
  glGetIntegerv(GL_MAX_TEXTURE_BUFFER_SIZE, &MaxTextureBufferSize);
  LogInt("Max Texture Buffer size: ", MaxTextureBufferSize);
  GlCheck("InitShaders0");
  TextureBufferInit();
  if (glGenVertexArrays == nullptr) return LogError(NoVertexArrays);
  glGenVertexArrays(1, &VoxelArray);
  glBindVertexArray(VoxelArray);
  GlCheck("InitShaders VBO");
  MainProgram = BuildProgram("config/shaders/MainVertShader.txt", "config/shaders/MainFragShader.txt");
  if (MainProgram == 0) return 0;
  GlCheck("InitShaders MakeShaders");
  glUseProgram(MainProgram);
  GlCheck("InitShaders Use shaders");
  BuildCube();
  SetMainUniforms();
  BindInstanceTextures();
  return LogInfo("Successfully initialized shaders");
}

int Init2DShaders() {
  glGenBuffers(1, &SquareBuffer);
  glBindBuffer(GL_ARRAY_BUFFER, SquareBuffer);
  Program2D = BuildProgram("config/shaders/2DVertShader.txt", "config/shaders/2DFragShader.txt");
  if (Program2D == 0) return 0;
  if (glGenVertexArrays == nullptr) return LogError(NoVertexArrays);
  glGenVertexArrays(1, &SquareArray);
  glBindVertexArray(SquareArray);
  glActiveTexture(GL_TEXTURE0);
  const GLuint attribute = static_cast<GLuint>(glGetAttribLocation(Program2D, "SquareVertices"));
  glVertexAttribPointer(attribute, 4, GL_FLOAT, GL_FALSE, 0, nullptr);
  glEnableVertexAttribArray(attribute);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
  return 1;
}

void TextureBufferInit() {
  LocBufferBytes = InstanceBufferBytes(static_cast<u32>(std::max(MaxTextureBufferSize, 0)));
  // A driver without these has no vertex arrays either: InitShaders stops there.
  if (glGenBuffers == nullptr || glTexBuffer == nullptr || glActiveTexture == nullptr) return;
  GlCheck("TextureBufferInit0");
  glActiveTexture(GL_TEXTURE0);
  GlCheck("TextureBufferInit1");
  glGenBuffers(1, &LocBuffer);
  GlCheck("TextureBufferInit2");
  glBindBuffer(GL_TEXTURE_BUFFER, LocBuffer);
  GlCheck("TextureBufferInit3");
  glBufferData(GL_TEXTURE_BUFFER, static_cast<GLsizeiptr>(LocBufferBytes), nullptr, GL_DYNAMIC_DRAW);
  GlCheck("TextureBufferInit4");
  glGenTextures(1, &LocTexture);
  GlCheck("TextureBufferInit5");
  glBindTexture(GL_TEXTURE_BUFFER, LocTexture);
  GlCheck("TextureBufferInit6");
  glTexBuffer(GL_TEXTURE_BUFFER, GL_RGBA32F, LocBuffer);
  GlCheck("TextureBufferInit7");
  glActiveTexture(GL_TEXTURE1);
  glGenBuffers(1, &ColBuffer);
  glBindBuffer(GL_TEXTURE_BUFFER, ColBuffer);
  glBufferData(GL_TEXTURE_BUFFER, static_cast<GLsizeiptr>(LocBufferBytes / 4), nullptr, GL_DYNAMIC_DRAW);
  glGenTextures(1, &ColTexture);
  glBindTexture(GL_TEXTURE_BUFFER, ColTexture);
  glTexBuffer(GL_TEXTURE_BUFFER, GL_RGBA8, ColBuffer);
  GlCheck("TextureBufferInitFin");
}

char *LoadShaderFile(const char *path, int *length) {
  *length = 0;
  FILE *file = fopen(path, "r");
  char *text = file != nullptr ? static_cast<char *>(malloc(FirstTextBytes)) : nullptr;
  int size = FirstTextBytes, used = 0;
  bool off = false;  // behind a '@', up to the line's end
  for (int c; text != nullptr && used < MaxTextBytes && (c = getc(file)) != EOF;) {
    const bool dropped = off || c == '@';
    off = dropped && c != '\n';
    if (dropped) continue;
    if (used == size - 1) {
      char *bigger = static_cast<char *>(realloc(text, static_cast<size_t>(size) * 2));
      if (bigger == nullptr) break;
      text = bigger;
      size *= 2;
    }
    text[used++] = static_cast<char>(c);
  }
  if (file != nullptr && ferror(file) != 0) {  // a folder, say
    free(text);
    text = nullptr;
  }
  if (file != nullptr) fclose(file);
  if (text == nullptr) return LogError("Cannot open shader file"), nullptr;
  text[used] = 0;
  *length = used;
  return text;
}

u32 CompileShader(u32 stage, const char *path) {
  int length = 0;
  char *text = LoadShaderFile(path, &length);
  const bool found = text != nullptr;
  const u32 shader = glCreateShader(stage);
  const GLchar *source = found ? text : "";
  glShaderSource(shader, 1, &source, &length);
  glCompileShader(shader);
  free(text);
  GLint compiled = 0;
  glGetShaderiv(shader, GL_COMPILE_STATUS, &compiled);
  // Some drivers take an empty text, which can't become a program.
  if (found && compiled != 0) return shader;
  LogError("Couldn't compile shader!");
  GLchar words[4096] = "";
  glGetShaderInfoLog(shader, sizeof words, nullptr, words);
  LogErrorLines(words);
  glDeleteShader(shader);
  return 0;
}

static u32 RefuseProgram(u32 program, const char *why) {
  LogError(why);
  GLchar words[4096] = "";
  glGetProgramInfoLog(program, sizeof words, nullptr, words);
  LogErrorLines(words);
  glDeleteProgram(program);
  return 0;
}

u32 LinkProgram(const u32 (&shaders)[2]) {
  if (shaders[0] == 0 || shaders[1] == 0) return 0;
  const u32 program = glCreateProgram();
  for (const u32 shader : shaders) glAttachShader(program, shader);
  glLinkProgram(program);
  GLint good = 0;
  glGetProgramiv(program, GL_LINK_STATUS, &good);
  if (good == 0) return RefuseProgram(program, "Couldn't link program!");
  glValidateProgram(program);
  glGetProgramiv(program, GL_VALIDATE_STATUS, &good);
  if (good == 0) return RefuseProgram(program, "Program failed validation!");
  return program;
}

u32 InstanceBufferBytes(u32 maxTextureBufferSize) {
  u64 bytes = UsualBufferBytes;
  const u64 budget = Options.MaxVoxels;
  if (budget > UsualMaxVoxels) bytes = budget * 96 / 5;  // 16 bytes an instance and a fifth more
  if (maxTextureBufferSize < bytes) {
    bytes = maxTextureBufferSize;
    Options.MaxVoxels = maxTextureBufferSize / 16;
  }
  LogInt("MaxMaxVoxels:", maxTextureBufferSize / 16);
  return static_cast<u32>(bytes);
}
