// Data that hold imputations: cases under the number of their imputation, 0 for the original data.
//
// The number is the outermost split variable. Whatever the procedure makes of it, the host checks
// it while the data are read for the first time.
#pragma once

#include <memory>

#include "embedded/data/CaseSource.h"
#include "embedded/data/Dictionary.h"

namespace embedded::data {

// The name under which the number is presented to procedures, and the document's name of it.
inline constexpr const char* imputationVariable = "IMPUTATION_";
inline constexpr const char* imputationName = "imputation";

// Whether a procedure takes the split variable for an imputation number: a numeric one of that
// name, in capital letters or not.
bool isImputationNumber(const Variable& variable);

class ImputationSource final : public CaseSource {
 public:
  // `inner` delivers cases in the order of the dictionary's split variables, the number outermost.
  // The dictionary outlives the source. Its streams throw Error(Data) for a number that is missing,
  // negative or not whole, when there is no original or fewer than two imputations, and for split
  // groups that an imputation has and the original has not, or that only some imputations have.
  ImputationSource(std::unique_ptr<CaseSource> inner, const Dictionary& dictionary);

  void measure(Dictionary& dictionary, std::span<const int> columns) override;
  void use(std::span<const int> columns) override { inner_->use(columns); }
  const ObservationLayout& layout() const override { return inner_->layout(); }
  std::unique_ptr<CaseStream> open() override;
  bool deliversPatterns() const override { return inner_->deliversPatterns(); }
  std::map<int, std::uint64_t> nonFinite() const override { return inner_->nonFinite(); }

 private:
  std::unique_ptr<CaseSource> inner_;
  const Dictionary& dictionary_;
  bool checked_ = false;
};

}  // namespace embedded::data
