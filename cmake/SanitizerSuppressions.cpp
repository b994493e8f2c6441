// Linked into every program that runs under a sanitizer, which reads it. Libraries of the
// system are not instrumented, so what they do right looks wrong:
// - the counter in libstdc++'s std::exception_ptr, for exceptions that go through a std::future;
// - what ICU loads once and hands to every thread under a lock of its own;
// - the thread on which Pango lets fontconfig load fonts, and what fontconfig keeps for the program's life;
// - the textures of the last window, which Qt Quick leaves to the end of the program;
// - what the constructor of a checkable button prepares for QML while assistive technology listens, and QML
//   then prepares again (Qt 6.4);
// - a message that Qt's D-Bus thread has in hand when the program ends.
extern "C" const char* __tsan_default_suppressions();
extern "C" const char* __tsan_default_suppressions() {
  return "race:std::__exception_ptr::exception_ptr::_M_release\n"
         "race:libicuuc.so\n"
         "race:libfontconfig.so\n"
         "race:libglib-2.0.so\n"
         "race:libpangoft2-1.0.so\n";
}

extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libfontconfig.so\nleak:libQt6Quick.so\nleak:QQmlData::createQQmlData\nleak:libQt6DBus.so\n";
}
