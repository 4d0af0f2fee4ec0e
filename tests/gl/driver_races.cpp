// The software driver and its compiler, which no sanitizer has seen being built, are not what the thread sanitizer judges.
#if defined(__SANITIZE_THREAD__)
extern "C" const char *__tsan_default_suppressions();
extern "C" const char *__tsan_default_suppressions() {
  return "race:swrast_dri.so\nmutex:swrast_dri.so\ndeadlock:libLLVM\n";
}
#endif
