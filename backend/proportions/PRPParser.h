// The parser of the command: from the host's tokens to the validated specification.
//
// The host's own parser reads the tokens by the description of the command; what it hands back is
// checked subcommand by subcommand and stored in the record. One parser serves one run. Its
// source files are named after what they parse. Every operation that returns a bool returns false
// after a message was issued, and its caller then stops.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "PRPValidSpecs.h"
#include "host/command/CommandDescriptor.h"
#include "host/command/CommandSpec.h"
#include "host/command/TokenInfoObj.h"
#include "host/command/VarSpecObj.h"
#include "host/data/OBS.h"
#include "host/data/ProcedureDataSource.h"
#include "host/errors/ParserMessage.h"
#include "statistics/Methods.h"

class PRPParser {
 public:
  // All three must outlive the parser.
  PRPParser(const KORA_TokenSequence& tokens, PRPValidSpecs& specs, ProcedureDataSource& source);
  ~PRPParser() = default;
  PRPParser(const PRPParser&) = delete;
  PRPParser& operator=(const PRPParser&) = delete;

  // True when the command is valid and the record filled. False after at least one message,
  // from the host's parser or from here; the record then keeps what was stored before. Called
  // once, on a new record, whose observation values live as long as the parser.
  bool Parse();

 private:
  using VarInds = PRPValidSpecs::VarInds;

  // The subcommands that were given, null for the others; they point into the parsed command.
  struct SubComs {
    const SubComObj* oneSample = nullptr;
    const SubComObj* paired = nullptr;
    const SubComObj* independent = nullptr;
    const SubComObj* success = nullptr;
    const SubComObj* missing = nullptr;
    const SubComObj* criteria = nullptr;
  };

  // A list of variables split at a reserved word.
  struct SplitTokens {
    TokenList before;
    TokenList after;
    bool found = false;
  };

  // How values become binary, as the command says it.
  struct Definition {
    BinomialOption option = LAST;
    bool categorical = true;
    std::string name = "LAST";
    double cutPoint = 0.0;
    // That of CUTPOINT, or those of LEVEL.
    TokenList tokens;
    // The qualifier LEVEL, null with any other option or when none was given.
    const ParamObj* levels = nullptr;
  };

  // --- The driver -------------------------------------------------------------------------------

  bool ReadCommand(CommandSpec& command);
  void FindSubComs(const CommandSpec& command);
  bool ChooseModel();
  bool LoadSplitVars();
  bool LoadWeightVar();
  bool ParseSubComs();
  void ParseMissing(const SubComObj& subCom);
  void ParseCriteria(const SubComObj& subCom);

  // --- What the test subcommands share ----------------------------------------------------------

  // Splits at the reserved word `code`. A second one is refused with the message `onlyOne`.
  std::optional<SplitTokens> SplitAt(const TokenList& tokens, TokenSequenceBase::OperatorCode code,
                                     std::string_view onlyOne);
  // The tokens as variables, repeats kept; none when one is refused, or is the weight.
  std::optional<VarInds> ValidVars(VarSpecObj& validator, const TokenList& tokens);
  // Takes repeats out, with the warning if there are any. `word` is the reserved word that the
  // list stands beside, empty without one.
  void DropRepeatedVars(VarInds& vars, std::string_view warning, std::string_view word,
                        std::string_view subComName);
  // Issues the error and returns false.
  bool Refuse(std::string_view identifier);

  // Reads both method lists into the record's flags. When `valid` is false, and after a failure,
  // the flags are still made, all false, but nothing more is read.
  bool ParseMethods(const SubComObj& subCom, std::string_view subComName, statistics::Design design,
                    bool valid);
  bool ParseMethodList(const SubComObj& subCom, std::string_view subComName,
                       statistics::Design design, statistics::MethodKind kind);
  bool SetMethodFlags(std::vector<std::string> keywords, std::string_view subComName,
                      statistics::Design design, statistics::MethodKind kind);
  PRPValidSpecs::Flags& FlagsOf(statistics::MethodKind kind);

  // --- The test subcommands ---------------------------------------------------------------------

  bool ParseOneSample(const SubComObj& subCom);
  bool ParseOneSampleVars(const SubComObj& subCom);
  void ParseTestValue(const SubComObj& subCom);

  bool ParsePaired(const SubComObj& subCom);
  bool ParsePairedVars(const SubComObj& subCom);
  bool ParseWithVars(VarInds before, const TokenList& tokens);
  bool ParsePairedQualifier();
  bool StoreSingleList(VarInds vars);
  bool StoreCrossedLists(VarInds before, VarInds after);
  bool StoreOrderedPairs(const VarInds& before, const VarInds& after);

  bool ParseIndependent(const SubComObj& subCom);
  bool ParseIndependentVars(const SubComObj& subCom);
  bool ParseGroupVar(const TokenList& tokens);
  bool ParseSelect(const SubComObj& subCom);
  std::optional<Definition> ReadSelect(const SubComObj& subCom, const KORA_Variable& group);
  bool AppendGroupLevels(const TokenList& tokens);
  bool CheckDistinctLevels();

  // --- SUCCESS ----------------------------------------------------------------------------------

  // `subCom` may be null: the definition is then LAST.
  bool ParseSuccess(const SubComObj* subCom);
  Definition ReadSuccess(const SubComObj* subCom);
  void DropRepeatedLevels(TokenList& levels);
  bool BuildAllElems(const Definition& definition);
  bool BuildElems(const Definition& definition, std::string_view paramName,
                  std::string_view subComName, const VarInds& vars,
                  PRPValidSpecs::BinInfoElems& elems);
  bool BuildElem(const Definition& definition, std::string_view paramName,
                 std::string_view subComName, std::int32_t var, BinInfoElem& elem);
  bool AppendSuccessLevels(const TokenList& levels, VarSpecObj& validator, BinInfoElem& elem);

  // --- Definitions of a success and of the groups -----------------------------------------------

  // The definition that a qualified parameter holds, with the number of CUTPOINT but not yet the
  // tokens of LEVEL.
  Definition ReadDefinition(const ParamObj& param) const;
  void AppendCutPoint(const Definition& definition, BinInfoElem& elem);
  // Appends a level of the variable that the validator holds. False, without a message, when the
  // validator says that the variable has no such value. `number` is the level as a number; empty
  // for a text, which may yet stand for a number as a date does.
  bool AppendLevel(VarSpecObj& validator, const std::string& text, std::optional<double> number,
                   BinInfoElem& elem);
  bool AppendLevel(VarSpecObj& validator, const TokenInfoObj& token, BinInfoElem& elem);
  // Appends a value in its three forms, and takes over the observation.
  void Append(double number, std::string text, OwnedOBS value, BinInfoElem& elem);
  // Sets option, flag, length and format of the element.
  static void DefineElem(const Definition& definition, const KORA_Variable& variable,
                         BinInfoElem& elem);

  CommandDescriptor fDescriptor;
  const KORA_TokenSequence& fTokens;
  PRPValidSpecs& fSpecs;
  ProcedureDataSource& fDataSource;
  ParserMessage fMessages;
  SubComs fSubComs;
  VarSpecObj fSplitVars;
  VarSpecObj fWeightVar;
  VarSpecObj fOneSampleVars;
  VarSpecObj fPairedVars;
  VarSpecObj fWithVars;
  VarSpecObj fIndependentVars;
  VarSpecObj fByVar;
  const double fSysMissing;
  // What the elements of the record point to.
  std::vector<OwnedOBS> fvObsValues;
};
