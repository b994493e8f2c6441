# Puts Velmora.app together:
#
#   velmora_bundle(APP HELPER WATCH SCRIPT_HOST)
#
#   Contents/Info.plist
#   Contents/MacOS/Velmora
#   Contents/Helpers/velmora                                     what MCP clients launch
#   Contents/Helpers/velmora-watch                               what `velmora watch` becomes
#   Contents/Helpers/velmora-script-host                         what AppleScript runs in
#   Contents/Resources/Velmora.icns                              drawn from the icon that Linux has
#   Contents/Resources/Velmora_TerminalAutomation.bundle         the script
#   Contents/Frameworks/                                         Qt, Sparkle and the rest (deploy.sh)
#
# Code stands in MacOS, Helpers and Frameworks only, since code elsewhere cannot be signed soundly. The helper finds its
# libraries as the application does: Helpers lies as deep as MacOS.

set(VELMORA_SPARKLE_FEED "" CACHE STRING "macOS: where Sparkle looks for updates (SUFeedURL)")
set(VELMORA_SPARKLE_KEY "" CACHE STRING "macOS: the public key of the updates (SUPublicEDKey)")
set(velmora_packaging "${CMAKE_CURRENT_LIST_DIR}")

# velmora_icns(ICNS): draws the application's icon, also where there is no bundle to put it into.
function(velmora_icns icon)
  set(svg "${CMAKE_SOURCE_DIR}/packaging/linux/icons/app.velmora.Velmora.svg")
  add_executable(RenderIcns "${velmora_packaging}/RenderIcns.cpp")
  target_link_libraries(RenderIcns PRIVATE velmora_options Qt6::Svg)
  velmora_sanitized_program(RenderIcns)
  set_target_properties(RenderIcns PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/packaging")
  add_custom_command(OUTPUT "${icon}" VERBATIM DEPENDS RenderIcns "${svg}"
    COMMAND RenderIcns "${svg}" "${icon}")
endfunction()

function(velmora_bundle app helper watch scriptHost)
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
  add_dependencies(${app} ${helper} ${watch} ${scriptHost})
  set(icon "${CMAKE_BINARY_DIR}/packaging/Velmora.icns")
  velmora_icns("${icon}")
  target_sources(${app} PRIVATE "${icon}")
  set_source_files_properties("${icon}" PROPERTIES MACOSX_PACKAGE_LOCATION Resources)
  set(contents "$<TARGET_BUNDLE_CONTENT_DIR:${app}>")
  add_custom_command(TARGET ${app} POST_BUILD VERBATIM
    COMMAND ${CMAKE_COMMAND} -E make_directory "${contents}/Helpers" "${contents}/Resources"
    COMMAND ${CMAKE_COMMAND} -E copy "$<TARGET_FILE:${helper}>" "${contents}/Helpers/velmora"
    COMMAND ${CMAKE_COMMAND} -E copy "$<TARGET_FILE:${watch}>" "${contents}/Helpers/velmora-watch"
    COMMAND ${CMAKE_COMMAND} -E copy "$<TARGET_FILE:${scriptHost}>" "${contents}/Helpers/velmora-script-host"
    COMMAND ${CMAKE_COMMAND} -E copy_directory
      "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/Velmora_TerminalAutomation.bundle"
      "${contents}/Resources/Velmora_TerminalAutomation.bundle")
endfunction()
