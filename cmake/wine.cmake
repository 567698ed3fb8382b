# Runs what was built for Windows under wine, if it is there; if not, no tests are built. Debian's
# wine64 alone is enough, which does not lie in the path.
find_program(KORVEL_WINE NAMES wine64 wine PATHS /usr/lib/wine)
if(KORVEL_WINE)
  configure_file(${CMAKE_CURRENT_LIST_DIR}/under_wine.in ${CMAKE_BINARY_DIR}/under_wine @ONLY
                 FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_BINARY_DIR}/under_wine)
else()
  message(STATUS "wine is not installed, so the tests are not built")
  set(KORVEL_TESTS OFF)
endif()
