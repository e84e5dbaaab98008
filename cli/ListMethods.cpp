// `methods`: every method with all that its row in the tables of methods says.
#include <algorithm>
#include <cctype>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "OutputFile.h"
#include "Program.h"
#include "embedded/errors/Error.h"
#include "render/Columns.h"
#include "statistics/Methods.h"

namespace cli {

namespace {

using embedded::output::Sentences;

constexpr std::size_t gap = 2;  // blanks behind the longest name

std::string upper(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return text;
}

using Fields = std::vector<std::pair<std::string, std::string>>;

// What there is to say of a method, in the reader's language; a text may be empty.
Fields fieldsOf(statistics::Design design, statistics::MethodKind kind,
                const statistics::MethodInfo& method, const Sentences& sentences) {
  const auto told = [&](std::string_view id) { return std::string(sentences.sentence(id)); };
  std::string place = told(statistics::nameOf(design)) + ", " + told(statistics::nameOf(kind));
  if (method.isDefault) {
    place += " (" + told("Method default") + ")";
  }
  return {{told("Method design"), place},
          {told("Method label"), told(method.label)},
          {told("Method variant"), told(method.variant)},
          {told("Method formula"), told(method.formula)},
          {told("Method can fail"), told(method.canFail)},
          {told("Method source"), std::string(method.source)}};
}

void print(std::string_view keyword, const Fields& fields, std::ostream& out) {
  std::size_t width = 0;
  for (const auto& [name, text] : fields) {
    width = std::max(width, render::columnsOf(name) + gap);
  }
  out << keyword << '\n';
  for (const auto& [name, text] : fields) {
    if (!text.empty()) {
      out << "  " << render::padRight(name, width) << text << '\n';
    }
  }
  out << '\n';
}

}  // namespace

int listMethods(const Arguments& arguments, const Sentences& sentences) {
  const std::string wanted = upper(arguments.keyword);
  OutputFile output("");
  bool any = false;
  for (const statistics::Design design : statistics::designs) {
    for (const statistics::MethodKind kind : statistics::methodKinds) {
      for (const statistics::MethodInfo& method : statistics::methodsOf(design, kind)) {
        if (wanted.empty() || method.keyword == wanted) {
          print(method.keyword, fieldsOf(design, kind, method, sentences), output.stream());
          any = true;
        }
      }
    }
  }
  if (!any) {
    throw embedded::Error(embedded::ErrorKind::Usage, "No method ^1 ...", {arguments.keyword});
  }
  output.commit();
  return 0;
}

}  // namespace cli
