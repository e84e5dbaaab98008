# Writes a source that holds the files of HTML reports as text.
# Called as a script: cmake -DFOLDER=... -DOUT=x.cpp -P Embed.cmake
file(READ ${FOLDER}/report.css style)
file(READ ${FOLDER}/report.js script)
file(WRITE ${OUT} "// Generated from the style sheet and the script of HTML reports; not to be edited.
#include \"render/HtmlPage.h\"

namespace render {

std::string_view htmlStyle() {
  static constexpr char text[] = R\"~~~(${style})~~~\";
  return {text, sizeof text - 1};
}

std::string_view htmlScript() {
  static constexpr char text[] = R\"~~~(${script})~~~\";
  return {text, sizeof text - 1};
}

}  // namespace render
")
