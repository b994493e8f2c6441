# Pango, Cairo and libpng: their headers as they are installed here, those of the last among the first's. What draws panes is compiled for macOS
# and not linked: the library of it is an empty file.
set(PkgConfig_FOUND TRUE)
set(CMAKE_CXX_CREATE_SHARED_MODULE "<CMAKE_COMMAND> -E touch <TARGET>")
function(pkg_check_modules prefix)
  execute_process(COMMAND pkg-config --cflags-only-I pangocairo OUTPUT_VARIABLE flags
    OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  string(REPLACE "-I" "" folders "${flags}")
  separate_arguments(folders)
  add_library(PkgConfig::${prefix} INTERFACE IMPORTED GLOBAL)
  target_include_directories(PkgConfig::${prefix} SYSTEM INTERFACE ${folders})
endfunction()
