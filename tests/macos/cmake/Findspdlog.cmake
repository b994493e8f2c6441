# Without its library, so that nothing of it is left to be linked.
set(spdlog_FOUND TRUE)
add_library(spdlog::spdlog INTERFACE IMPORTED)
target_include_directories(spdlog::spdlog SYSTEM INTERFACE "${VELMORA_MACOS_HEADERS}")
target_compile_definitions(spdlog::spdlog INTERFACE SPDLOG_FMT_EXTERNAL FMT_HEADER_ONLY)
