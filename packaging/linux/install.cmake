# What `cmake --install` puts where on Linux, and the Debian package of it (`cpack -G DEB`). What the configuration leaves
# out is left out here too: without the application the package needs no Qt.

include(GNUInstallDirs)

set(velmora_linux "${CMAKE_CURRENT_LIST_DIR}")
set(velmora_packaging "${velmora_linux}/..")
set(velmora_id app.velmora.Velmora)
set(velmora_installed_documents "")

# velmora_gzip(FILE NAME DESTINATION): the file, compressed without a time, so that two builds give the same bytes.
function(velmora_gzip file name destination)
  set(compressed "${CMAKE_BINARY_DIR}/packaging/${name}.gz")
  add_custom_command(OUTPUT "${compressed}" VERBATIM DEPENDS "${file}"
    COMMAND sh -c "gzip -9nc \"$1\" >\"$2\"" sh "${file}" "${compressed}")
  install(FILES "${compressed}" DESTINATION "${destination}")
  set(velmora_installed_documents "${velmora_installed_documents};${compressed}" PARENT_SCOPE)
endfunction()

install(TARGETS VelmoraHeadless VelmoraHelper RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
velmora_gzip("${velmora_packaging}/man/velmora.1" velmora.1 "${CMAKE_INSTALL_MANDIR}/man1")
velmora_gzip("${velmora_packaging}/man/velmora-headless.1" velmora-headless.1 "${CMAKE_INSTALL_MANDIR}/man1")

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

configure_file("${velmora_packaging}/debian/changelog.in" "${CMAKE_BINARY_DIR}/packaging/changelog" @ONLY)
install(FILES "${velmora_packaging}/debian/copyright" DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/velmora")
velmora_gzip("${CMAKE_SOURCE_DIR}/CHANGELOG.md" changelog "${CMAKE_INSTALL_DATADIR}/doc/velmora")
velmora_gzip("${CMAKE_BINARY_DIR}/packaging/changelog" changelog.Debian "${CMAKE_INSTALL_DATADIR}/doc/velmora")

if(VELMORA_BUILD_APP)
  install(TARGETS VelmoraApp RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
  velmora_gzip("${velmora_packaging}/man/velmora-app.1" velmora-app.1 "${CMAKE_INSTALL_MANDIR}/man1")
  install(FILES "${velmora_linux}/${velmora_id}.desktop" DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")
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
    list(APPEND velmora_installed_documents "${picture}")
  endforeach()
endif()

add_custom_target(VelmoraInstalledFiles ALL DEPENDS ${velmora_installed_documents})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME velmora)
set(CPACK_PACKAGE_VENDOR "The Velmora authors")
set(CPACK_PACKAGE_CONTACT "The Velmora authors <maintainers@velmora.app>")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "let AI coding agents use your terminal, within limits")
set(CPACK_PACKAGE_DESCRIPTION
"Velmora lets AI coding agents (MCP clients) use your own terminal,
tmux, within limits that you set: which sessions may be used, and for
what. It keeps a history of every request, and one switch stops all changes.
.
No network port is opened; the small helper that agents launch reaches the
bridge over a private Unix socket.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "tmux (>= 3.2)")
if(VELMORA_BUILD_APP)
  # Debian's QML modules do not depend on each other, and nothing links them.
  string(APPEND CPACK_DEBIAN_PACKAGE_DEPENDS
    ", qml6-module-qtqml, qml6-module-qtqml-models, qml6-module-qtqml-workerscript, qml6-module-qtquick"
    ", qml6-module-qtquick-window, qml6-module-qtquick-templates, qml6-module-qtquick-controls"
    ", qml6-module-qtquick-layouts, libqt6svg6")
  set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-wayland, packagekit")
  set(CPACK_DEBIAN_PACKAGE_SUGGESTS "fonts-noto-cjk")
endif()
include(CPack)
