# The sources that match the patterns, without those of the other system: what only one system has
# lies in NAME_posix.cpp or NAME_windows.cpp.
function(korvel_sources result)
  file(GLOB sources CONFIGURE_DEPENDS ${ARGN})
  if(WIN32)
    list(FILTER sources EXCLUDE REGEX "_posix\\.cpp$")
  else()
    list(FILTER sources EXCLUDE REGEX "_windows\\.cpp$")
  endif()
  set(${result} ${sources} PARENT_SCOPE)
endfunction()
