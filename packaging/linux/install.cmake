# What `cmake --install` puts where on Linux; debian/ makes packages of it. What the configuration leaves out is left out
# here too.

include(GNUInstallDirs)

set(velmora_linux "${CMAKE_CURRENT_LIST_DIR}")
set(velmora_packaging "${velmora_linux}/..")
set(velmora_id app.velmora.Velmora)
# Whatever the umask: what draws pictures is not loaded from a folder that others may write to.
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

install(TARGETS VelmoraHeadless VelmoraHelper RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
if(VELMORA_PICTURES)
  # Beside the folder of the programs, wherever other libraries go: they look for it from there.
  install(TARGETS PictureLibrary LIBRARY DESTINATION lib/velmora)
endif()
# Nobody calls it by name: `velmora watch` becomes it.
install(TARGETS VelmoraWatch RUNTIME DESTINATION "${CMAKE_INSTALL_LIBEXECDIR}/velmora")
install(FILES "${velmora_packaging}/man/velmora.1" "${velmora_packaging}/man/velmora-headless.1"
  DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
install(FILES "${velmora_packaging}/man/velmora-settings.5" DESTINATION "${CMAKE_INSTALL_MANDIR}/man5")

install(FILES "${velmora_packaging}/completions/velmora.bash" RENAME velmora
  DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions")
install(FILES "${velmora_packaging}/completions/velmora.fish"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d")
# Debian's zsh looks in one folder under /usr and in another under /usr/local.
install(CODE "
  set(folder site-functions)
  if(CMAKE_INSTALL_PREFIX MATCHES \"/usr$\")
    set(folder vendor-completions)
  endif()
  file(INSTALL \"${velmora_packaging}/completions/_velmora\" TYPE FILE
    DESTINATION \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_DATADIR}/zsh/\${folder}\")")

# A service of the user's, switched on by nobody but the user. It names the program where it is installed in the end.
install(CODE "
  set(programs \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}\")
  configure_file(\"${velmora_linux}/velmora.service.in\" \"${CMAKE_BINARY_DIR}/packaging/velmora.service\" @ONLY)
  file(INSTALL \"${CMAKE_BINARY_DIR}/packaging/velmora.service\" TYPE FILE
    DESTINATION \"\${CMAKE_INSTALL_PREFIX}/lib/systemd/user\")")

# Where there is polkit, its dialogue takes the place of the word that is shown on a terminal.
install(FILES "${velmora_linux}/app.velmora.policy" DESTINATION "${CMAKE_INSTALL_DATADIR}/polkit-1/actions")

if(VELMORA_BUILD_APP)
  install(TARGETS VelmoraApp RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
  install(FILES "${velmora_packaging}/man/velmora-app.1" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
  install(FILES "${velmora_linux}/${velmora_id}.desktop" DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")
  # The day of the release stands in the changelog.
  file(STRINGS "${CMAKE_SOURCE_DIR}/CHANGELOG.md" velmora_release_day LIMIT_COUNT 1 REGEX "^## \\[${PROJECT_VERSION}\\] - ")
  string(REGEX REPLACE ".* - " "" velmora_release_day "${velmora_release_day}")
  configure_file("${velmora_linux}/${velmora_id}.metainfo.xml.in"
    "${CMAKE_BINARY_DIR}/packaging/${velmora_id}.metainfo.xml" @ONLY)
  install(FILES "${CMAKE_BINARY_DIR}/packaging/${velmora_id}.metainfo.xml"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo")

  set(icons "${CMAKE_INSTALL_DATADIR}/icons/hicolor")
  install(FILES "${velmora_linux}/icons/${velmora_id}.svg" DESTINATION "${icons}/scalable/apps")
  install(FILES "${velmora_linux}/icons/${velmora_id}-symbolic.svg" DESTINATION "${icons}/symbolic/apps")
  add_executable(RenderIcon "${velmora_linux}/icons/RenderIcon.cpp")
  target_link_libraries(RenderIcon PRIVATE velmora_options Qt6::Svg)
  velmora_sanitized_program(RenderIcon)
  set_target_properties(RenderIcon PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/packaging")
  foreach(size IN ITEMS 16 22 24 32 48 64 128 256 512)
    set(picture "${CMAKE_BINARY_DIR}/packaging/${size}/${velmora_id}.png")
    file(MAKE_DIRECTORY "${CMAKE_BINARY_DIR}/packaging/${size}")
    add_custom_command(OUTPUT "${picture}" VERBATIM DEPENDS "${velmora_linux}/icons/${velmora_id}.svg"
      COMMAND RenderIcon "${velmora_linux}/icons/${velmora_id}.svg" ${size} "${picture}")
    install(FILES "${picture}" DESTINATION "${icons}/${size}x${size}/apps")
    list(APPEND pictures "${picture}")
  endforeach()
  add_custom_target(VelmoraIcons ALL DEPENDS ${pictures})
endif()
