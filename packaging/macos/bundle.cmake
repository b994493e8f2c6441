# Puts Velmora.app together:
#
#   velmora_bundle(APP HELPER SCRIPT_HOST)
#
#   Contents/Info.plist
#   Contents/MacOS/Velmora
#   Contents/Helpers/velmora                                     what MCP clients launch
#   Contents/Helpers/velmora-script-host                         what AppleScript runs in
#   Contents/Resources/Velmora_TerminalAutomation.bundle         the script
#   Contents/Frameworks/                                         Qt (macdeployqt) and Sparkle
#
# Code stands in MacOS, Helpers and Frameworks only, since code elsewhere cannot be signed soundly. The helper finds its
# libraries as the application does: Helpers lies as deep as MacOS.

set(VELMORA_SPARKLE_FEED "" CACHE STRING "macOS: where Sparkle looks for updates (SUFeedURL)")
set(VELMORA_SPARKLE_KEY "" CACHE STRING "macOS: the public key of the updates (SUPublicEDKey)")
set(velmora_packaging "${CMAKE_CURRENT_LIST_DIR}")

function(velmora_bundle app helper scriptHost)
  set(VELMORA_SPARKLE_PLIST "")
  if(VELMORA_SPARKLE)
    if(NOT VELMORA_SPARKLE_FEED OR NOT VELMORA_SPARKLE_KEY)
      message(FATAL_ERROR "VELMORA_SPARKLE needs VELMORA_SPARKLE_FEED and VELMORA_SPARKLE_KEY")
    endif()
    string(CONCAT VELMORA_SPARKLE_PLIST
      "\t<key>SUFeedURL</key>\n\t<string>${VELMORA_SPARKLE_FEED}</string>\n"
      "\t<key>SUPublicEDKey</key>\n\t<string>${VELMORA_SPARKLE_KEY}</string>\n")
  endif()
  configure_file("${velmora_packaging}/Info.plist.in" "${CMAKE_BINARY_DIR}/packaging/Info.plist" @ONLY)
  set_target_properties(${app} PROPERTIES
    MACOSX_BUNDLE TRUE
    OUTPUT_NAME Velmora
    MACOSX_BUNDLE_INFO_PLIST "${CMAKE_BINARY_DIR}/packaging/Info.plist"
    BUILD_RPATH "@executable_path/../Frameworks"
    INSTALL_RPATH "@executable_path/../Frameworks")
  add_dependencies(${app} ${helper} ${scriptHost})
  set(contents "$<TARGET_BUNDLE_CONTENT_DIR:${app}>")
  add_custom_command(TARGET ${app} POST_BUILD VERBATIM
    COMMAND ${CMAKE_COMMAND} -E make_directory "${contents}/Helpers" "${contents}/Resources"
    COMMAND ${CMAKE_COMMAND} -E copy "$<TARGET_FILE:${helper}>" "${contents}/Helpers/velmora"
    COMMAND ${CMAKE_COMMAND} -E copy "$<TARGET_FILE:${scriptHost}>" "${contents}/Helpers/velmora-script-host"
    COMMAND ${CMAKE_COMMAND} -E copy_directory
      "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/Velmora_TerminalAutomation.bundle"
      "${contents}/Resources/Velmora_TerminalAutomation.bundle")
endfunction()
