# A program that is needed while others are built, or tested: it runs on the building machine,
# whatever is built for. `result` names it for a command.
function(korvel_tool target source result)
  if(CMAKE_CROSSCOMPILING)
    find_program(KORVEL_BUILD_CXX NAMES g++ c++ REQUIRED)
    set(program ${CMAKE_CURRENT_BINARY_DIR}/${target})
    add_custom_command(OUTPUT ${program} DEPENDS ${source} VERBATIM
                       COMMAND ${KORVEL_BUILD_CXX} -std=c++20 -O1 -I${PROJECT_SOURCE_DIR}
                               -o ${program} ${CMAKE_CURRENT_SOURCE_DIR}/${source})
    add_custom_target(${target}_here ALL DEPENDS ${program})
    set(${result} ${program} PARENT_SCOPE)
  else()
    add_executable(${target} ${source})
    target_link_libraries(${target} PRIVATE korvel_options)
    set(${result} ${target} PARENT_SCOPE)
  endif()
endfunction()
