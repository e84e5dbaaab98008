// Validators: which variables they accept, and which values.
#include "conformance/Checks.h"
#include "conformance/Description.h"
#include "conformance/Parsed.h"
#include "host/command/VarSpecObj.h"

namespace conformance {

namespace {

using UPSpecTypes::RepeatPassedThrough;
using UPSpecTypes::RepeatRefused;

void checkVariables(const Parsed& parsed, Report& report) {
  VarSpecObj list(parsed.source, "LIST", "");
  list.SetErrorReport(false);
  const bool valid = list.ValidateVariables(parsed.list(), RepeatRefused);
  report.expect(valid && list.GetValidVarList() == std::vector<std::int32_t>({0, 1}),
                "VarSpecObj::GetValidVarList: the dictionary indices accepted, in order");
  const std::int32_t twice[] = {0, 0};
  VarSpecObj repeats(parsed.source, "LIST", "");
  repeats.SetErrorReport(false);
  report.expect(!repeats.SetVariables(twice, RepeatRefused),
                "VarSpecObj::SetVariables: repeats are refused when they are to be");
  VarSpecObj passed(parsed.source, "LIST", "");
  passed.SetErrorReport(false);
  report.expect(
      passed.SetVariables(twice, RepeatPassedThrough) && passed.GetValidVarList().size() == 2,
      "VarSpecObj::SetVariables: repeats pass through when they may");
  VarSpecObj common(parsed.source, "LIST", "NUMBER");
  common.SetErrorReport(false);
  const std::int32_t first[] = {0};
  report.expect(common.SetVariables(first, RepeatRefused) && !common.CheckCommonVars(list),
                "VarSpecObj::CheckCommonVars: false for a variable in common");
}

void checkNumbers(const Parsed& parsed, Report& report) {
  VarSpecObj number(parsed.source, "LIST", "");
  number.SetErrorReport(false);
  OwnedOBS value;
  KORA_Format format;
  const bool valid = number.SetVariable(0) && number.ValidateCatValue("1", value, format);
  report.expect(valid && value != nullptr && value[0].number == 1 && !format.IsString(),
                "VarSpecObj::ValidateCatValue: a number of a numeric variable");
  report.expect(!number.ValidateCatValue("one", value, format),
                "VarSpecObj::ValidateCatValue: no word for a number");
}

void checkStrings(const Parsed& parsed, Report& report) {
  VarSpecObj text(parsed.source, "LIST", "");
  text.SetErrorReport(false);
  OwnedOBS value;
  KORA_Format format;
  const bool valid = text.SetVariable(1) && text.ValidateCatValue("beta", value, format);
  const bool padded =
      valid && value != nullptr && std::string(value[0].bytes, 12) == "beta        ";
  report.expect(padded && format.IsString(),
                "VarSpecObj::ValidateCatValue: a text, padded with blanks to the width");
  report.expect(!text.ValidateCatValue("longer than that", value, format),
                "VarSpecObj::ValidateCatValue: no text beyond the width");
}

}  // namespace

void checkValidators(Host& host, Report& report) {
  runChecked(host, plainCommand, report, "VarSpecObj: does not throw", [&] {
    const Parsed parsed;
    report.expect(parsed.accepted, "UniversalParser: 0 when the command follows its description");
    if (!parsed.accepted) return;
    checkVariables(parsed, report);
    checkNumbers(parsed, report);
    checkStrings(parsed, report);
  });
}

}  // namespace conformance
