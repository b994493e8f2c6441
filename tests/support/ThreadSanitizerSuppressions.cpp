// Read by the thread sanitizer when a test program links this file; without the sanitizer nobody calls it.
// The counter in std::exception_ptr lives in libstdc++.so, which the sanitizer does not see: an exception
// that went through a std::future looks as if its last owner freed it without the other being done.
extern "C" const char* __tsan_default_suppressions();
extern "C" const char* __tsan_default_suppressions() {
  return "race:std::__exception_ptr::exception_ptr::_M_release\n";
}
