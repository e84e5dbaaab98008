// The parser: a made-up command is read by its description alone.
#include "conformance/Checks.h"
#include "conformance/Description.h"
#include "host/command/CommandSpec.h"
#include "host/command/TokenInfoObj.h"
#include "host/command/UniversalParser.h"
#include "host/data/ProcedureDataSource.h"
#include "host/errors/ParserMessage.h"

namespace conformance {

CommandDescriptor description() {
  using namespace UPSpecTypes;
  SubComDescriptor list("LIST", SubComPlain, false, true);
  list.setExportParamDesc(ParamTokenList, true);
  ParamDescriptor number("NUMBER", ParamNumber, false, true, BracketsHost);
  number.setLowerBoundary(0, LowerOpen);
  number.setUpperBoundary(100, UpperClosed);
  list.addParamDesc(number);
  ParamDescriptor words("WORDS", ParamKeywordList, false, true, BracketsHost);
  for (const char* word : {"ONE", "TWO", "THREE"}) words.addStringValue(word);
  list.addParamDesc(words);
  ParamDescriptor rule("RULE", ParamQualified, false, true, BracketsHost);
  rule.addQualifDesc("FIRST");
  rule.addQualifDesc(ParamDescriptor("LEVEL", ParamTokenList, false, false, BracketsHost));
  list.addParamDesc(rule);
  CommandDescriptor command("CHECKHOST", "Host check");
  command.addSubComDesc(list);
  return command;
}

namespace {

void checkParams(const SubComObj& list, Report& report) {
  double value = -1;
  const ParamObj* number = list.getParamObj("NUMBER");
  report.expect(number != nullptr && number->getNumberValue(value) && value == 50,
                "ParamObj::getNumberValue: the number that was given");
  const ParamObj* words = list.getParamObj("WORDS");
  report.expect(words != nullptr &&
                    words->getUpStringList() == std::vector<std::string>({"TWO", "ONE", "TWO"}),
                "ParamObj::getUpStringList: whole, in capitals, in order, with repeats");
  const ParamObj* rule = list.getParamObj("RULE");
  std::string keyword;
  const ParamObj* carried = rule == nullptr ? nullptr : rule->getStringAndQual(keyword);
  report.expect(carried != nullptr && keyword == "LEVEL" && carried->getTokenList().size() == 2,
                "ParamObj::getStringAndQual: the qualifier and the value that it carries", keyword);
  report.expect(list.getParamObj("ELSE") == nullptr,
                "SubComObj::getParamObj: null for what was not given");
}

void checkList(const SubComObj& list, Report& report) {
  const ParamObj* given = list.exportParamObj();
  report.expect(given != nullptr && given->getTokenList().size() == 3,
                "SubComObj::exportParamObj: the list that the subcommand begins with");
  if (given == nullptr || given->getTokenList().size() != 3) return;
  const TokenList tokens = given->getTokenList();
  report.expect(tokens[0].getString() == "v" && tokens[0].getUpperString() == "V",
                "TokenInfoObj::getString: as written, and in capitals");
  report.expect(
      tokens[1].IsReservedWord() && tokens[1].getOperatorCode() == TokenSequenceBase::OperatorBy,
      "TokenInfoObj::IsReservedWord: BY and WITH are reserved in lists");
  report.expect(!tokens[2].IsReservedWord() && !tokens[2].IsNumber(),
                "TokenInfoObj::IsNumber: a name is no number");
}

void checkAccepted(Report& report) {
  const KORA_TokenSequence tokens(true);
  const ProcedureDataSource source;
  CommandSpec spec;
  const CommandDescriptor described = description();
  UniversalParser parser(tokens, spec, described);
  const bool accepted = parser.getCommandSpecifications() == 0;
  report.expect(accepted, "UniversalParser: 0 when the command follows its description");
  if (!accepted) return;
  report.expect(spec.getSubComListSize() == 1, "CommandSpec: the number of subcommands");
  const SubComObj* list = spec.getSubComObj("LIST");
  report.expect(list != nullptr, "CommandSpec::getSubComObj: by the declared name");
  report.expect(spec.getSubComObj("ELSE") == nullptr,
                "CommandSpec::getSubComObj: null for what was not given");
  if (list == nullptr) return;
  checkList(*list, report);
  checkParams(*list, report);
}

void checkRefused(Host& host, const char* command, Report& report) {
  runChecked(host, command, report, "UniversalParser: does not throw", [&] {
    const KORA_TokenSequence tokens(true);
    const ProcedureDataSource source;
    CommandSpec spec;
    const CommandDescriptor described = description();
    UniversalParser parser(tokens, spec, described);
    report.expect(parser.getCommandSpecifications() != 0,
                  "UniversalParser: not 0 when the command breaks its description", command);
  });
}

}  // namespace

void checkParser(Host& host, Report& report) {
  runChecked(host, parserCommand, report, "UniversalParser: does not throw",
             [&] { checkAccepted(report); });
  for (const char* command : refusedCommands) checkRefused(host, command, report);
}

}  // namespace conformance
