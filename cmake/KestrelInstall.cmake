# What an installation holds, and the Debian package of it: ninja package.

include(GNUInstallDirs)
set(linux ${PROJECT_SOURCE_DIR}/packaging/linux)

install(TARGETS kestrel kestrel-cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
# Started by kestrel-cli alone.
install(TARGETS kestrel-report RUNTIME DESTINATION ${CMAKE_INSTALL_LIBEXECDIR}/kestrel)
install(FILES ${linux}/io.kestrel.evaluation.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${linux}/io.kestrel.evaluation.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${linux}/kestrel.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(FILES ${linux}/70-kestrel.rules DESTINATION lib/udev/rules.d)
install(FILES ${linux}/copyright DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/kestrel)
# Not with the documents, which some systems leave out: the program opens it.
install(DIRECTORY ${PROJECT_BINARY_DIR}/guide DESTINATION ${CMAKE_INSTALL_DATADIR}/kestrel)
foreach(program kestrel kestrel-cli)
  install(FILES ${linux}/completions/${program}.bash RENAME ${program}
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
endforeach()

# Packages hold manual pages and changelogs compressed, with no time of day in them.
find_program(GZIP gzip REQUIRED)
function(install_compressed file destination name)
  set(compressed ${PROJECT_BINARY_DIR}/packaging/${name}.gz)
  add_custom_command(OUTPUT ${compressed}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/packaging
    COMMAND ${GZIP} -9nc ${file} > ${compressed}
    DEPENDS ${file} VERBATIM)
  add_custom_target(compressed_${name} ALL DEPENDS ${compressed})
  install(FILES ${compressed} DESTINATION ${destination})
endfunction()
install_compressed(${linux}/man/kestrel.1 ${CMAKE_INSTALL_MANDIR}/man1 kestrel.1)
install_compressed(${linux}/man/kestrel-cli.1 ${CMAKE_INSTALL_MANDIR}/man1 kestrel-cli.1)
install_compressed(${linux}/changelog ${CMAKE_INSTALL_DATADIR}/doc/kestrel changelog)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kestrel)
set(CPACK_PACKAGE_CONTACT "The Kestrel evaluation program authors <kestrel@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "bench program for a tri-axial vibration sensor")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
  "Captures averaged spectra and time records of one tri-axial digital vibration
sensor, plots them, compares them with alarm bands, edits every register and
logs captures to files. A simulated sensor is built in.")
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "libqt6svg6, fonts-dejavu-core")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
include(CPack)
