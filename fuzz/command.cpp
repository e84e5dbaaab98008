// The text of a command, on a small table in memory: lexer, parser, module, document, tables.
#include <sstream>

#include "Support.h"
#include "embedded/messages/Catalogue.h"
#include "embedded/session/Run.h"
#include "render/Renderer.h"

namespace {

embedded::data::MemoryTable smallTable() {
  embedded::data::MemoryTable table;
  for (const char* name : {"v", "u", "Event Count"}) {
    embedded::output::VariableInfo info;
    info.name = name;
    info.numberLabels = {{0.0, "failure"}, {1.0, "success"}};
    table.variables.push_back(std::move(info));
  }
  table.rows = {{1, 1, 3}, {1, 0, 5}, {0, 1, 0}, {0, 0, -1.5}};
  table.counts = {12, 5, 9, 14};
  return table;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::attempt([&] {
    embedded::Request request;
    request.table = smallTable();
    request.command = fuzz::textOf(data, size);
    const auto session = embedded::run(request, fuzz::module());
    render::Context context;
    context.sentences = &embedded::messages::Catalogue::forLanguage("en");
    context.description = &fuzz::module().description();
    for (const char* format : {"text", "json"}) {
      std::ostringstream out;
      render::findFormat(format)->render(session->document, context, out);
    }
  });
  return 0;
}
