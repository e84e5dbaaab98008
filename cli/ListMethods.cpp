// `methods`: every method with all that its row in the tables of methods says.
#include <algorithm>
#include <cctype>
#include <iostream>
#include <string>

#include "Program.h"
#include "embedded/errors/Error.h"
#include "embedded/messages/Catalogue.h"
#include "statistics/Methods.h"

namespace cli {

namespace {

using embedded::messages::Catalogue;

std::string upper(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return text;
}

void line(const char* name, std::string_view text) {
  if (!text.empty()) {
    std::cout << "  " << name << std::string(12 - std::string_view(name).size(), ' ') << text
              << '\n';
  }
}

void print(statistics::Design design, statistics::MethodKind kind,
           const statistics::MethodInfo& method) {
  std::cout << method.keyword << '\n';
  line("design", std::string(statistics::nameOf(design)) + ", " +
                     std::string(statistics::nameOf(kind)) +
                     (method.isDefault ? " (default)" : ""));
  line("label", Catalogue::forLanguage("en").sentence(method.label));
  line("variant", method.variant);
  line("formula", method.formula);
  line("can fail", method.canFail);
  line("source", method.source);
  std::cout << '\n';
}

}  // namespace

int listMethods(const Arguments& arguments) {
  const std::string wanted = upper(arguments.keyword);
  bool any = false;
  for (const statistics::Design design : statistics::designs) {
    for (const statistics::MethodKind kind : statistics::methodKinds) {
      for (const statistics::MethodInfo& method : statistics::methodsOf(design, kind)) {
        if (wanted.empty() || method.keyword == wanted) {
          print(design, kind, method);
          any = true;
        }
      }
    }
  }
  if (!any) {
    throw embedded::Error(embedded::ErrorKind::Usage, "No method ^1 ...", {arguments.keyword});
  }
  return 0;
}

}  // namespace cli
