// What the sanitizers ask a program for when it starts.

// GNUstep has no frame pointers, and a short stack would hide the frame that says what it is.
extern "C" const char* __asan_default_options() {
  return "detect_leaks=1:fast_unwind_on_malloc=0:detect_stack_use_after_return=1";
}
extern "C" const char* __ubsan_default_options() { return "print_stacktrace=1"; }
// The runtime's own tables of classes, selectors and locks.
extern "C" const char* __lsan_default_suppressions() { return "leak:libobjc.so.4\n"; }
