// Enumeration values of the command description.
#pragma once

namespace UPSpecTypes {

// What kind of subcommand; plain ones are all there is here.
enum SubComSpec { SubComPlain = 1 };

// How a parameter's value is written and read.
enum ParamSpec {
  ParamTokenList = 2,    // free tokens: variable names, values -> getTokenList
  ParamKeyword = 3,      // exactly one of the declared keywords -> isStringValueCase
  ParamKeywordList = 5,  // some of the declared keywords -> getUpStringList
  ParamNumber = 7,       // one number, within the bounds -> getNumberValue
  ParamQualified = 27    // one of the declared qualifiers, bare or with a parameter of its own
                         // -> getStringAndQual
};

// How a value list may be bracketed; 0 is the host's own way.
enum BracketOptions { BracketsHost = 0 };

enum LowerBdryOptions { LowerClosed = 1, LowerOpen = 2 };
enum UpperBdryOptions { UpperClosed = 1, UpperOpen = 2 };

// What a validator does with a variable that is named twice.
enum RepeatVarOptions {
  RepeatRefused = 0,       // an error
  RepeatPassedThrough = 3  // kept, as often as it was named
};

}  // namespace UPSpecTypes
