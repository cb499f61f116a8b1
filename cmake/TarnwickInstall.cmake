# What `cmake --install` puts where, as a desktop program expects it on Linux: the executable, its
# desktop entry, icons in the hicolor theme, AppStream metainfo, the MIME types of its files and
# the string tables (which the program finds under share/tarnwick, beside its bin directory).
include(GNUInstallDirs)

set(TW_APP_ID "com.tarnwick.Tarnwick")
# The day the project version was released, for the metainfo's releases entry.
set(TW_RELEASE_DATE "2026-11-23")
set(TW_ICON_SIZES 16 22 24 32 48 64 128 256 512)

set(tw_linux "${PROJECT_SOURCE_DIR}/resources/linux")
set(tw_icon "${PROJECT_SOURCE_DIR}/resources/icons/${TW_APP_ID}.svg")
set(tw_hicolor "${PROJECT_BINARY_DIR}/icons/hicolor")
set(TW_DESKTOP_ENTRY "${tw_linux}/${TW_APP_ID}.desktop")
set(TW_METAINFO "${PROJECT_BINARY_DIR}/${TW_APP_ID}.metainfo.xml")
configure_file("${tw_linux}/${TW_APP_ID}.metainfo.xml.in" "${TW_METAINFO}" @ONLY)

# The PNG sizes are drawn from the SVG by the build, so that the two never disagree.
add_executable(render-icon "${PROJECT_SOURCE_DIR}/resources/icons/RenderIcon.cpp")
target_link_libraries(render-icon PRIVATE Qt6::Svg Qt6::Gui tw_options)
set(tw_icon_pngs)
foreach(size ${TW_ICON_SIZES})
  list(APPEND tw_icon_pngs "${tw_hicolor}/${size}x${size}/apps/${TW_APP_ID}.png")
endforeach()
add_custom_command(OUTPUT ${tw_icon_pngs}
  COMMAND render-icon "${tw_icon}" "${tw_hicolor}" ${TW_ICON_SIZES}
  DEPENDS render-icon "${tw_icon}"
  COMMENT "Drawing the application icon at ${TW_ICON_SIZES} pixels")
add_custom_target(tw_icons ALL DEPENDS ${tw_icon_pngs})

install(TARGETS tarnwick RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
# The web tiles' helper, found by the program beside it in the build and here once installed.
install(TARGETS tarnwick-web RUNTIME DESTINATION "${CMAKE_INSTALL_LIBEXECDIR}/tarnwick")
install(FILES "${TW_DESKTOP_ENTRY}" DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")
install(FILES "${TW_METAINFO}" DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo")
install(FILES "${tw_linux}/${TW_APP_ID}.mime.xml" DESTINATION "${CMAKE_INSTALL_DATADIR}/mime/packages"
  RENAME "${TW_APP_ID}.xml")
install(FILES "${tw_icon}" DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps")
foreach(size ${TW_ICON_SIZES})
  install(FILES "${tw_hicolor}/${size}x${size}/apps/${TW_APP_ID}.png"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps")
endforeach()
file(GLOB tw_string_tables CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/resources/strings/*.json")
install(FILES ${tw_string_tables} DESTINATION "${CMAKE_INSTALL_DATADIR}/tarnwick/strings")
