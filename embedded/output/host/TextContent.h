// What this host keeps of a cell text, and how it reads the variables behind the interface.
#pragma once

#include "embedded/data/Dictionary.h"
#include "embedded/output/Text.h"
#include "host/output/BpCellText.h"

struct BpTextContent {
  embedded::output::TextPtr text;
};

namespace embedded::output {

inline BpTextHandle handleOf(TextPtr text) {
  return std::make_shared<const BpTextContent>(BpTextContent{std::move(text)});
}

inline TextPtr textOf(const BpCellText& text) {
  return text.Replicate()->text;
}

// Every variable that a procedure can hold is one of this host's dictionary.
inline const VariablePtr& infoOf(const KORA_Variable& variable) {
  return static_cast<const data::Variable&>(variable).info;
}

inline NumberFormat formatOf(BpFormatSpec format) {
  switch (format.kind) {
    case BpFormatSpec::CountFormat:
      return NumberFormat::Count;
    case BpFormatSpec::SigDigitFormat:
      return NumberFormat::SigDigit;
    case BpFormatSpec::GeneralStatFormat:
      break;
  }
  return NumberFormat::GeneralStat;
}

}  // namespace embedded::output
