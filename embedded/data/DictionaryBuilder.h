// The dictionary of a run: what the relation says of its columns, overlaid by a schema.
#pragma once

#include <vector>

#include "Dictionary.h"
#include "Relation.h"
#include "Schema.h"

namespace embedded::data {

struct DictionaryPlan {
  Dictionary dictionary;
  std::vector<ColumnRead> reads;  // of each variable, in its order; widths as far as known
};

// Texts that the schema calls missing and that are no numbers, dates or times: they must not turn
// a column of such values into one of strings when a file's types are guessed.
std::vector<std::string> nullTextsOf(const Schema& schema);

// Error(Data) where the schema does not fit: an unknown field (with the nearest name), a field
// twice, a type that the values do not have, a category or missing value of another type,
// columns that `fieldsMatch` does not allow, a weight or split variable that is not there.
// Weight and splits are the schema's.
DictionaryPlan buildDictionary(const Relation& relation, const Schema& schema);

// Sets the weight: empty for none. Error(Usage) for an unknown name, Error(Data) for a string.
void setWeight(Dictionary& dictionary, const std::string& name);
// Sets the split variables, outermost first. Error(Usage) for an unknown name or a repeated one.
void setSplits(Dictionary& dictionary, const std::vector<std::string>& names);
// Makes a numeric variable the imputation number: the outermost split variable, under the names
// that procedures and the document know it by. Called after setSplits. Error(Usage) for an unknown
// name, and for split variables that were `given` and hold it or another one of its new name;
// Error(Data) for a string.
void setImputation(Dictionary& dictionary, const std::string& name, bool given);

}  // namespace embedded::data
