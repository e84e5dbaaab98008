# Compiles the message files below po/ into the target: each by msgfmt, and all of them into one
# generated source, so that the program looks up no file at run time.

# compile_messages(TARGET FOLDER): every FOLDER/po/*.po becomes a part of TARGET.
function(compile_messages target folder)
  find_program(MSGFMT msgfmt REQUIRED)
  file(GLOB sources CONFIGURE_DEPENDS ${folder}/po/*.po)
  set(out ${CMAKE_CURRENT_BINARY_DIR}/messages)
  file(MAKE_DIRECTORY ${out})
  set(compiled)
  foreach(source ${sources})
    get_filename_component(language ${source} NAME_WE)
    add_custom_command(OUTPUT ${out}/${language}.mo
      COMMAND ${MSGFMT} --check-format --no-hash --endianness=little
              -o ${out}/${language}.mo ${source}
      DEPENDS ${source} VERBATIM)
    list(APPEND compiled ${out}/${language}.mo)
  endforeach()
  add_custom_command(OUTPUT ${out}/CompiledFiles.cpp
    COMMAND ${CMAKE_COMMAND} "-DFILES=${compiled}" -DOUT=${out}/CompiledFiles.cpp
            -P ${folder}/Embed.cmake
    DEPENDS ${compiled} ${folder}/Embed.cmake VERBATIM)
  target_sources(${target} PRIVATE ${out}/CompiledFiles.cpp)
endfunction()
