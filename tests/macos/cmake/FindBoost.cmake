# Boost's headers as they are installed here; Boost.JSON is compiled from them.
set(Boost_FOUND TRUE)
add_library(BoostJsonForMac STATIC "${CMAKE_CURRENT_LIST_DIR}/BoostJson.cpp")
target_include_directories(BoostJsonForMac SYSTEM PUBLIC "${VELMORA_MACOS_HEADERS}")
add_library(Boost::json ALIAS BoostJsonForMac)
