// A document that is written group by group, each of a numbered sample or imputation.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <vector>

#include "embedded/output/Document.h"
#include "embedded/output/Writer.h"

namespace embedded::output {

class NumberedRun : public testing::Test {
 protected:
  // With the name of the split variable that numbers the groups.
  explicit NumberedRun(const char* number) {
    for (const char* name : {number, "half"}) {
      VariableInfo info;
      info.name = name;
      splits_.push_back(std::make_shared<const VariableInfo>(info));
    }
  }

  // From now on, rows belong to this number, and to this group of the user's if there is one.
  void begin(double number, std::optional<double> group = {}) {
    SplitGroup values{{Text::ofValue(splits_[0], number, false)}};
    if (group) {
      values.values.push_back(Text::ofValue(splits_[1], *group, false));
    }
    document_.splits.push_back(values);
    writer_.beginSplit(static_cast<Index>(document_.splits.size() - 1), false);
  }

  std::vector<VariablePtr> splits_;
  Document document_;
  Writer writer_{document_};
};

}  // namespace embedded::output
