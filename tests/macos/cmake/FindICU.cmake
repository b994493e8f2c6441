# ICU's headers as they are installed here; linkProgram.py knows its symbols.
set(ICU_FOUND TRUE)
foreach(part uc i18n)
  add_library(ICU::${part} INTERFACE IMPORTED)
  target_include_directories(ICU::${part} SYSTEM INTERFACE "${VELMORA_MACOS_HEADERS}")
endforeach()
