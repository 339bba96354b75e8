# The Windows release: one zip, build/MAVU_VideoCapture-VERSION-win64.zip,
# made by `cmake --build build --target package`. It holds one folder with
# the program, its icons, the rehearsal camera (synthcam.dll and
# synthcam.exe, which registers it) and the user's guide as README.txt.
install(TARGETS MAVU_VideoCapture synthcam_tool RUNTIME DESTINATION .)
# The camera's DLL alone, without the import library the build makes of it.
install(FILES $<TARGET_FILE:synthcam> DESTINATION .)
install(FILES ${MAVU_ICONS} DESTINATION MavuVideoIcons)
install(FILES ${CMAKE_SOURCE_DIR}/docs/user-guide.txt DESTINATION . RENAME README.txt)

set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_NAME MAVU_VideoCapture)
set(CPACK_PACKAGE_VENDOR "MAVU Video Capture")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_FILE_NAME MAVU_VideoCapture-${PROJECT_VERSION}-win64)
set(CPACK_INCLUDE_TOPLEVEL_DIRECTORY ON)
# The programs without their debugging information.
set(CPACK_STRIP_FILES ON)
set(CPACK_OUTPUT_FILE_PREFIX ${CMAKE_BINARY_DIR})
include(CPack)
