# Writes a source that holds the bytes of FILES, and says of which language each is.
# Called as a script: cmake -DFILES=a.mo;b.mo -DOUT=x.cpp -P Embed.cmake
set(arrays "")
set(rows "")
set(number 0)
foreach(file ${FILES})
  get_filename_component(language ${file} NAME_WE)
  file(READ ${file} hex HEX)
  string(REGEX REPLACE "(..)" "0x\\1," bytes "${hex}")
  string(APPEND arrays "constexpr unsigned char file${number}[] = {${bytes}};\n")
  string(APPEND rows "    {\"${language}\", file${number}},\n")
  math(EXPR number "${number} + 1")
endforeach()
file(WRITE ${OUT} "// Generated from the message files; not to be edited.
#include \"embedded/messages/CompiledFiles.h\"

namespace embedded::messages {

namespace {

${arrays}
constexpr CompiledFile files[] = {
${rows}};

}  // namespace

std::span<const CompiledFile> compiledFiles() {
  return files;
}

}  // namespace embedded::messages
")
