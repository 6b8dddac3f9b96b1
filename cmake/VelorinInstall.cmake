# Installing QDX-Velorin as a Linux desktop program, and its Debian package.
#
#   cmake --install build --prefix /usr/local
#   cd build && cpack -G DEB
#
# What goes where (under the prefix):
#   bin/velorin                                   the program
#   bin/cnvtogif                                  its GIF conversion script
#   bin/velorin-feed                              the live feed server (session bus)
#   share/velorin/help/                           the HTML help, opened by Help > Contents,
#                                                 with the button pictures in buttons/
#   share/applications/velorin.desktop            the desktop entry
#   share/icons/hicolor/scalable/apps/velorin.svg the icon, and PNGs of it in the
#   share/icons/hicolor/<n>x<n>/apps/velorin.png  usual sizes
#   share/doc/qdx-velorin/README.md               how to build and run it
#
# The program finds its help beside itself in the build tree (<build>/help)
# and at ../share/velorin/help from bin/ once installed.

include(GNUInstallDirs)

set(VELORIN_HELP_SOURCE ${PROJECT_SOURCE_DIR}/docs/help)
set(VELORIN_ICON_SVG ${PROJECT_SOURCE_DIR}/resources/velorin.svg)
set(VELORIN_ICON_SIZES 16 22 24 32 48 64 128 256)

# The help beside the program in the build tree, refreshed on every build.
# The button pictures go with it, for the page on the button bar.
set(VELORIN_BUTTON_PICTURES ${PROJECT_SOURCE_DIR}/resources/buttons)
file(GLOB VELORIN_HELP_FILES CONFIGURE_DEPENDS ${VELORIN_HELP_SOURCE}/* ${VELORIN_BUTTON_PICTURES}/*.svg)
add_custom_command(
  OUTPUT ${CMAKE_BINARY_DIR}/help/index.html
  COMMAND ${CMAKE_COMMAND} -E remove_directory ${CMAKE_BINARY_DIR}/help
  COMMAND ${CMAKE_COMMAND} -E copy_directory ${VELORIN_HELP_SOURCE} ${CMAKE_BINARY_DIR}/help
  COMMAND ${CMAKE_COMMAND} -E copy_directory ${VELORIN_BUTTON_PICTURES} ${CMAKE_BINARY_DIR}/help/buttons
  DEPENDS ${VELORIN_HELP_FILES}
  COMMENT "Copying the help beside the program")

# The icon as PNG in each size the icon theme looks for.
find_program(VELORIN_RSVG_CONVERT rsvg-convert)
set(VELORIN_ICON_PNGS "")
if(VELORIN_RSVG_CONVERT)
  foreach(size IN LISTS VELORIN_ICON_SIZES)
    set(png ${CMAKE_BINARY_DIR}/icons/${size}x${size}/velorin.png)
    add_custom_command(
      OUTPUT ${png}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/icons/${size}x${size}
      COMMAND ${VELORIN_RSVG_CONVERT} -w ${size} -h ${size} -o ${png} ${VELORIN_ICON_SVG}
      DEPENDS ${VELORIN_ICON_SVG}
      COMMENT "Drawing the ${size}x${size} icon")
    list(APPEND VELORIN_ICON_PNGS ${png})
  endforeach()
else()
  message(WARNING "rsvg-convert not found (Debian: librsvg2-bin): only the scalable icon is installed")
endif()

add_custom_target(velorin_data ALL DEPENDS ${CMAKE_BINARY_DIR}/help/index.html ${VELORIN_ICON_PNGS})
foreach(target velorin button_bar_qt_tests)
  if(TARGET ${target})
    add_dependencies(${target} velorin_data)
  endif()
endforeach()

# The program.
install(TARGETS velorin RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
# The live feed server velorin-feed installs beside the program.
if(TARGET velorin_feed_server)
  install(TARGETS velorin_feed_server RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

# The GIF conversion script of the Make All run, found beside the program:
# copied there in the build tree, installed there.
set(VELORIN_CONVERT_SCRIPT ${PROJECT_SOURCE_DIR}/tools/convert/cnvtogif)
configure_file(${VELORIN_CONVERT_SCRIPT} ${CMAKE_BINARY_DIR}/cnvtogif COPYONLY)
install(PROGRAMS ${VELORIN_CONVERT_SCRIPT} DESTINATION ${CMAKE_INSTALL_BINDIR})

install(DIRECTORY ${VELORIN_HELP_SOURCE}/ DESTINATION ${CMAKE_INSTALL_DATADIR}/velorin/help)
install(DIRECTORY ${VELORIN_BUTTON_PICTURES}/ DESTINATION ${CMAKE_INSTALL_DATADIR}/velorin/help/buttons
        FILES_MATCHING PATTERN "*.svg")
install(FILES ${PROJECT_SOURCE_DIR}/resources/velorin.desktop
        DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${VELORIN_ICON_SVG} DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
foreach(size IN LISTS VELORIN_ICON_SIZES)
  if(VELORIN_RSVG_CONVERT)
    install(FILES ${CMAKE_BINARY_DIR}/icons/${size}x${size}/velorin.png
            DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps)
  endif()
endforeach()
install(FILES ${PROJECT_SOURCE_DIR}/README.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/qdx-velorin)

# The Debian package. Its dependencies are the shared libraries the program
# links (found by dpkg-shlibdeps), the Qt platform plugins that open its
# windows, and the serif face of its chart text.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME qdx-velorin)
set(CPACK_PACKAGE_VENDOR "QDX-Velorin developers")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Technical-analysis charting workstation")
set(CPACK_PACKAGE_DESCRIPTION
    "QDX-Velorin charts the price history of market instruments from text files, databases and live feeds, derives indicator and two-series charts from them, and keeps trend lines, channels and whole desks as layouts.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "QDX-Velorin developers <velorin@localhost>")
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins, fonts-liberation2")
# velorin-feed and the live feed need the desktop's session bus.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "hicolor-icon-theme, default-dbus-session-bus | dbus-session-bus")
# The database feed talks to the ODBC driver manager; the drivers are the user's choice.
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "unixodbc")
include(CPack)
