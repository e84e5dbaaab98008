// Text helpers, number formats and the common areas.
#include "conformance/Checks.h"
#include "host/attach/CommonAreas.h"
#include "host/output/BpCellText.h"
#include "host/output/BpProcedure.h"
#include "host/text/KORAMBstr.h"

namespace conformance {

void checkTexts(Report& report) {
  std::string text = " a b  ";
  KORAMBstrtrim_A(text);
  report.expect(text == " a b", "KORAMBstrtrim_A: takes trailing blanks off, and no others",
                "'" + text + "'");
  text = "aZ9-";
  KORAMBstrupr_A(text);
  report.expect(text == "AZ9-", "KORAMBstrupr_A: folds to capital letters", text);
  text = "aZ9-";
  KORAMBstrlwr_A(text);
  report.expect(text == "az9-", "KORAMBstrlwr_A: folds to small letters", text);
  text = "\xff";
  KORAMBstrupr_A(text);
  report.expect(text == "\xff", "KORAMBstrupr_A: invalid bytes stay as they are");
  const bool ordered = KORAMBstrncoll_A("a", "b", 1) < 0 && KORAMBstrncoll_A("b", "a", 1) > 0 &&
                       KORAMBstrncoll_A("a", "a", 1) == 0;
  report.expect(ordered, "KORAMBstrncoll_A: the sign is that of the order");
  report.expect(KORAMBstrncoll_A("abc", "abd", 2) == 0, "KORAMBstrncoll_A: compares n bytes");
  report.expect(KORAMBstrncoll_A("ab", "abc", 9) < 0,
                "KORAMBstrncoll_A: n beyond an end means up to the end");
  report.expect(KORAMBltoa_A(-2147483647 - 1) == "-2147483648" && KORAMBltoa_A(0) == "0",
                "KORAMBltoa_A: decimal digits");
}

void checkNumbers(Report& report) {
  const bool kinds = BpProcedure::Count().kind == BpFormatSpec::CountFormat &&
                     BpProcedure::GeneralStat().kind == BpFormatSpec::GeneralStatFormat &&
                     BpProcedure::SigDigit(95).kind == BpFormatSpec::SigDigitFormat;
  report.expect(kinds, "BpProcedure: the formats of counts, statistics and plain digits");
  report.expect(pvGetCmnGlb() == pvGetCmnGlb() && pvGetCmaDic() == pvGetCmaDic(),
                "common areas: lie where they lie as long as the process");
}

}  // namespace conformance
