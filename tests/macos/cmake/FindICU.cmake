# ICU's headers as they are installed here; linkProgram.py knows its symbols.
set(ICU_FOUND TRUE)
add_library(ICU::uc INTERFACE IMPORTED)
target_include_directories(ICU::uc SYSTEM INTERFACE "${VELMORA_MACOS_HEADERS}")
