# CMake's view of the cross compiler that scripts/macos-check.sh sets up: VELMORA_MACOS_TOOLS holds the wrappers c++ and
# ar, VELMORA_MACOS_CPU is arm64 or x86_64.
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR ${VELMORA_MACOS_CPU})
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES VELMORA_MACOS_TOOLS VELMORA_MACOS_CPU)
set(CMAKE_AR "${VELMORA_MACOS_TOOLS}/ar")
set(CMAKE_RANLIB "${VELMORA_MACOS_TOOLS}/ranlib")
set(CMAKE_INSTALL_NAME_TOOL /bin/false)
set(CMAKE_OSX_SYSROOT "")
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)

# What CMake would find out by linking programs; the compiler builds a whole C++ library for the first of these.
foreach(language CXX OBJCXX)
  set(CMAKE_${language}_COMPILER "${VELMORA_MACOS_TOOLS}/c++")
  set(CMAKE_${language}_COMPILER_FORCED TRUE)
  set(CMAKE_${language}_COMPILER_ID_RUN TRUE)
  set(CMAKE_${language}_COMPILER_ID Clang)
  set(CMAKE_${language}_COMPILER_VERSION 21.1)
  set(CMAKE_${language}_STANDARD_COMPUTED_DEFAULT 17)
  set(CMAKE_${language}_EXTENSIONS_COMPUTED_DEFAULT ON)
  set(CMAKE_${language}_COMPILE_FEATURES cxx_std_17 cxx_std_20)
  set(CMAKE_${language}_LINK_EXECUTABLE "${VELMORA_MACOS_TOOLS}/link <TARGET> <OBJECTS> <LINK_LIBRARIES>")
endforeach()
# CMake knows no such option of a compiler for Objective-C++ that it was told of.
set(CMAKE_OBJCXX_FLAGS_INIT -std=c++20)
set(CMAKE_HAVE_LIBC_PTHREAD TRUE)
