// What every renderer receives and gives, and the table of output formats.
#pragma once

#include <ostream>
#include <span>
#include <string_view>

#include "embedded/output/Description.h"
#include "embedded/output/Document.h"
#include "embedded/output/Values.h"

namespace render {

using embedded::output::Document;

// What a renderer needs besides the document.
struct Context {
  const embedded::output::Sentences* sentences = nullptr;      // of the reader's language
  const embedded::output::Description* description = nullptr;  // of the module that wrote
  int width = 100;                                             // of a text line, in columns
  bool colour = false;
  std::string_view decimalPoint = ".";  // for readers; machines read "."
  std::string_view language = "en";     // the tag of the texts' language
  std::string_view invocation = {};     // the command line that made the run; empty: unknown
  bool rowSentences = false;            // each row of results also as a sentence ready to paste
};

// Writes the whole document. Errors of the stream are left in the stream.
using Render = void (*)(const Document& document, const Context& context, std::ostream& out);

// Whether a terminal can show what a format consists of.
enum class Content : bool { Text, Bytes };

// One output format: a row of the table of formats.
struct Format {
  std::string_view name;     // as written after --format
  std::string_view endings;  // of file names, separated by blanks
  Content content;
  bool forMachines;    // read by programs
  bool holdsMessages;  // a refused command is written too, with its messages
  Render render;
  // Of a format whose document can leave in parts, whole split groups each: what stands before the
  // first part, and a part. What they write together is what `render` writes. Null for the others.
  Render begin = nullptr;
  Render part = nullptr;
};

// All formats, the default first.
std::span<const Format> formats();
// The format of this name or file ending, or null.
const Format* findFormat(std::string_view name);
const Format* formatOfFile(std::string_view path);

void renderText(const Document& document, const Context& context, std::ostream& out);
void renderJson(const Document& document, const Context& context, std::ostream& out);
void renderCsv(const Document& document, const Context& context, std::ostream& out);
void renderCsvHeader(const Document& document, const Context& context, std::ostream& out);
void renderCsvRows(const Document& document, const Context& context, std::ostream& out);
void renderMarkdown(const Document& document, const Context& context, std::ostream& out);
void renderLatex(const Document& document, const Context& context, std::ostream& out);
void renderXlsx(const Document& document, const Context& context, std::ostream& out);
void renderHtml(const Document& document, const Context& context, std::ostream& out);

}  // namespace render
