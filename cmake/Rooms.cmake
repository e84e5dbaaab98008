# A room is a folder with a CMake target of its own. Other rooms see its headers only by
# linking to it: the include directory of a room holds one link, named as the room is named in
# #include lines, so that an include that no link allows does not compile.

# Flags that every target of this project is compiled with.
add_library(project_flags INTERFACE)
target_compile_options(project_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
  -Wold-style-cast -Werror
  # Comparisons in the formulas are part of their meaning: no fused multiply-add.
  -ffp-contract=off
  # gcc 12 sees overlapping copies in plain concatenations of strings.
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
  # Clang takes the standard library's own use of a deprecated helper for ours.
  $<$<CXX_COMPILER_ID:Clang>:-Wno-error=deprecated-declarations>)

# room_include(TARGET SCOPE LINK FOLDER): TARGET offers FOLDER's headers as "LINK/...".
function(room_include target scope link folder)
  set(root ${PROJECT_BINARY_DIR}/rooms/${target})
  get_filename_component(parent ${root}/${link} DIRECTORY)
  file(MAKE_DIRECTORY ${parent})
  if(NOT IS_SYMLINK ${root}/${link})
    file(CREATE_LINK ${folder} ${root}/${link} SYMBOLIC)
  endif()
  target_include_directories(${target} ${scope} ${root})
endfunction()

# room_sources(VARIABLE FOLDER...): the translation units of these folders.
macro(room_sources variable)
  set(${variable})
  foreach(folder ${ARGN})
    file(GLOB found CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.cpp)
    list(APPEND ${variable} ${found})
  endforeach()
endmacro()
