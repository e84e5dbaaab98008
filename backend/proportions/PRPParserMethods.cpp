// Method lists, TESTTYPES and CITYPES: one reading for all designs, driven by the tables of
// methods.

#include <algorithm>
#include <span>

#include "PRPAssert.h"
#include "PRPParser.h"
#include "PRPParserNames.h"
#include "PRPParserRepeats.h"

using statistics::Design;
using statistics::MethodInfo;
using statistics::MethodKind;
using statistics::methodsOf;

namespace {

std::string_view ParamNameOf(MethodKind kind) {
  return kind == MethodKind::Test ? prp::TestTypes : prp::CITypes;
}

}  // namespace

PRPValidSpecs::Flags& PRPParser::FlagsOf(MethodKind kind) {
  return kind == MethodKind::Test ? fSpecs.GetTestTypes() : fSpecs.GetCITypes();
}

bool PRPParser::ParseMethods(const SubComObj& subCom, std::string_view subComName, Design design,
                             bool valid) {
  for (const MethodKind kind : {MethodKind::Test, MethodKind::Interval}) {
    FlagsOf(kind).assign(methodsOf(design, kind).size(), false);
    valid = valid && ParseMethodList(subCom, subComName, design, kind);
  }
  return valid;
}

bool PRPParser::ParseMethodList(const SubComObj& subCom, std::string_view subComName, Design design,
                                MethodKind kind) {
  if (const ParamObj* param = subCom.getParamObj(ParamNameOf(kind)))
    return SetMethodFlags(param->getUpStringList(), subComName, design, kind);
  PRPValidSpecs::Flags& flags = FlagsOf(kind);
  const std::span<const MethodInfo> methods = methodsOf(design, kind);
  for (std::size_t slot = 0; slot < methods.size(); ++slot) flags[slot] = methods[slot].isDefault;
  return true;
}

bool PRPParser::SetMethodFlags(std::vector<std::string> keywords, std::string_view subComName,
                               Design design, MethodKind kind) {
  if (prp::RemoveRepeats(keywords))
    fMessages.GenericWarning("Param ^1, subcom ^2, duplicate options ...",
                             {ParamNameOf(kind), subComName});
  const std::span<const MethodInfo> methods = methodsOf(design, kind);
  PRPValidSpecs::Flags& flags = FlagsOf(kind);
  bool all = false;
  bool none = false;
  for (const std::string& keyword : keywords) {
    const auto method = std::ranges::find(methods, keyword, &MethodInfo::keyword);
    if (method != methods.end())
      flags[static_cast<std::size_t>(method - methods.begin())] = true;
    else if (keyword == prp::All)
      all = true;
    else if (keyword == prp::None)
      none = true;
    else
      PRP_ASSERT(false, "false", "PRPParser");
  }
  if (none && keywords.size() > 1) {
    const std::string text = std::string(ParamNameOf(kind)).append(" ").append(prp::None);
    fMessages.ParamExclAnyOther(text, subComName);
    return false;
  }
  if (all) flags.assign(methods.size(), true);
  return true;
}
