# The terminal library's headers as they are installed here; linkProgram.py knows its symbols.
set(Curses_FOUND TRUE)
set(CURSES_INCLUDE_DIRS "${VELMORA_MACOS_HEADERS}")
set(CURSES_LIBRARIES "")
