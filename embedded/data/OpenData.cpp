// From an address to cases.
#include "OpenData.h"

#include "DataAddress.h"
#include "DictionaryBuilder.h"
#include "DuckDbRelation.h"
#include "Schema.h"
#include "SqlRelation.h"

namespace embedded::data {
namespace {

Schema schemaFor(const DataOptions& options, const DataAddress& address) {
  const std::string dataFile = address.files.empty() ? "" : address.files.front();
  if (!options.schema.empty()) return readSchema(options.schema, dataFile);
  return dataFile.empty() ? Schema{} : findSchema(dataFile);
}

std::unique_ptr<Relation> relationOf(const DataAddress& address, const DataOptions& options,
                                     const Schema& schema) {
  if (address.server)
    return openServer(address.text, *address.server, options.timeout, options.progress);
  return openDuckDb(address,
                    {options.threads, options.memory, nullTextsOf(schema), options.progress});
}

output::DataInfo infoOf(Relation& relation, const Dictionary& dictionary) {
  output::DataInfo info;
  info.source = relation.source();
  info.fingerprint = relation.fingerprint();
  const auto variable = [&](int index) -> const Variable& {
    return dictionary.variables[static_cast<std::size_t>(index)];
  };
  if (dictionary.weight >= 0) info.weight = variable(dictionary.weight).name;
  for (const int index : dictionary.splits) info.splits.push_back(variable(index).info);
  return info;
}

}  // namespace

OpenedData openData(const DataOptions& options) {
  const DataAddress address = parseAddress(options.address);
  const Schema schema = schemaFor(options, address);
  std::unique_ptr<Relation> relation = relationOf(address, options, schema);
  DictionaryPlan plan = buildDictionary(*relation, schema);
  if (options.weight) setWeight(plan.dictionary, *options.weight);
  if (options.splits) setSplits(plan.dictionary, *options.splits);
  if (options.imputation)
    setImputation(plan.dictionary, *options.imputation, options.splits.has_value());
  OpenedData opened;
  opened.info = infoOf(*relation, plan.dictionary);
  CaseOptions cases = options.cases;
  // Whether a server's data are still the same is as dear to ask as to read them, and who names a
  // limit of memory wants it for the engine.
  cases.keepsRows = !address.server && options.memory.empty();
  opened.cases = std::make_unique<RelationCases>(std::move(relation), plan.dictionary,
                                                 std::move(plan.reads), cases, options.progress);
  std::vector<int> fixed = plan.dictionary.splits;
  if (plan.dictionary.weight >= 0) fixed.push_back(plan.dictionary.weight);
  opened.cases->measure(plan.dictionary, fixed);
  opened.dictionary = std::move(plan.dictionary);
  return opened;
}

}  // namespace embedded::data
