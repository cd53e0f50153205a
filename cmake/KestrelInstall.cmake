# What an installation holds, and the Debian packages of it: the program, and the Python package beside
# it. ninja package.

include(GNUInstallDirs)
# What names no other component belongs to the program.
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME program)
set(linux ${PROJECT_SOURCE_DIR}/packaging/linux)

install(TARGETS kestrel kestrel-cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
# Started by kestrel-cli alone.
install(TARGETS kestrel-report RUNTIME DESTINATION ${CMAKE_INSTALL_LIBEXECDIR}/kestrel)
install(FILES ${linux}/io.kestrel.evaluation.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${linux}/io.kestrel.evaluation.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${linux}/kestrel.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(FILES ${linux}/70-kestrel.rules DESTINATION lib/udev/rules.d)
install(FILES ${linux}/service/kestrel-monitor@.service DESTINATION lib/systemd/system)
install(FILES ${linux}/copyright ${PROJECT_SOURCE_DIR}/docs/afar.md
  ${PROJECT_SOURCE_DIR}/docs/from-other-analysers.md
  DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/kestrel)
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

if(TARGET _kestrel)
  set(python ${PROJECT_SOURCE_DIR}/python)
  set(package lib/python3/dist-packages/kestrel)
  set(doc ${CMAKE_INSTALL_DATADIR}/doc/python3-kestrel)
  install(TARGETS _kestrel LIBRARY DESTINATION ${package} COMPONENT python)
  install(DIRECTORY ${python}/kestrel/ DESTINATION ${package} COMPONENT python
    FILES_MATCHING PATTERN "*.py" PATTERN "*.pyi" PATTERN py.typed PATTERN __pycache__ EXCLUDE)
  install(DIRECTORY ${python}/examples DESTINATION ${doc} COMPONENT python
    FILES_MATCHING PATTERN "*.py" PATTERN __pycache__ EXCLUDE)
  install(FILES ${PROJECT_SOURCE_DIR}/docs/python.md ${PROJECT_SOURCE_DIR}/docs/python-reference.md
    ${linux}/copyright ${PROJECT_BINARY_DIR}/packaging/changelog.gz
    DESTINATION ${doc} COMPONENT python)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/pictures DESTINATION ${doc} COMPONENT python
    FILES_MATCHING PATTERN "python_*.png")
  list(APPEND packages python)
  execute_process(COMMAND ${Python_EXECUTABLE} -c "import sys; print(*sys.version_info[:2], sep='.')"
    OUTPUT_VARIABLE version OUTPUT_STRIP_TRAILING_WHITESPACE)
  string(REGEX MATCH "[0-9]+$" minor ${version})
  math(EXPR minor "${minor} + 1")
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_COMPONENTS_ALL program ${packages})
set(CPACK_COMPONENTS_GROUPING IGNORE)  # one package a component
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME kestrel)
set(CPACK_PACKAGE_NAME kestrel)
set(CPACK_PACKAGE_CONTACT "The Kestrel evaluation program authors <kestrel@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "bench program for a tri-axial vibration sensor")
set(CPACK_COMPONENT_PROGRAM_DESCRIPTION
  "Captures averaged spectra and time records of one tri-axial digital vibration
sensor, plots them, compares them with alarm bands, edits every register and
logs captures to files. A simulated sensor is built in.")
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The account of the monitor's service.
set(CPACK_DEBIAN_PROGRAM_PACKAGE_DEPENDS "adduser")
set(CPACK_DEBIAN_PROGRAM_PACKAGE_CONTROL_EXTRA
  ${linux}/service/postinst ${linux}/service/prerm ${linux}/service/postrm)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_RECOMMENDS "libqt6svg6, fonts-dejavu-core")
set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-kestrel)
set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS
  "python3 (<< 3.${minor}), python3 (>= ${version}~), python3-numpy")
set(CPACK_DEBIAN_PYTHON_PACKAGE_RECOMMENDS "kestrel")  # the rules for the adapter
set(CPACK_DEBIAN_PYTHON_PACKAGE_SUGGESTS "python3-matplotlib, python3-pandas")
set(CPACK_COMPONENT_PYTHON_DESCRIPTION
  "The module kestrel: captures of one tri-axial digital vibration sensor as
arrays, their peaks, levels and quantities, the archive of records, registers,
alarm bands and set-ups. A simulated sensor is built in.")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
include(CPack)
