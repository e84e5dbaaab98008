#include "CountingValues.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>

#include "host/distributions/MCMV.h"

namespace embedded::data {
namespace {

constexpr std::array<std::string_view, 11> types{"BOOLEAN", "TINYINT",  "SMALLINT",  "INTEGER",
                                                 "BIGINT",  "UTINYINT", "USMALLINT", "UINTEGER",
                                                 "UBIGINT", "FLOAT",    "DOUBLE"};

// Real numbers as they are: what is not finite is counted later, row by row.
template <class T>
void copyReal(duckdb_vector vector, std::size_t count, OBS* out) {
  const T* values = static_cast<const T*>(duckdb_vector_get_data(vector));
  const std::uint64_t* validity = duckdb_vector_get_validity(vector);
  for (std::size_t i = 0; i < count; ++i) {
    const bool known = validity == nullptr || (validity[i / 64] >> (i % 64) & 1U) != 0;
    out[i].number = known ? static_cast<double>(values[i]) : MCMV::Missing;
  }
}

duckdb_type typeOf(duckdb_vector vector) {
  duckdb_logical_type type = duckdb_vector_get_column_type(vector);
  const duckdb_type id = duckdb_get_type_id(type);
  duckdb_destroy_logical_type(&type);
  return id;
}

}  // namespace

bool CountingValues::canRead(const std::string& typeName) {
  return std::ranges::find(types, typeName) != types.end();
}

CountingValues::CountingValues(Engine& engine) : name_(engine.newName("count_value")) {
  duckdb_scalar_function function = duckdb_create_scalar_function();
  const std::unique_ptr<duckdb_scalar_function, void (*)(duckdb_scalar_function*)> owner(
      &function, duckdb_destroy_scalar_function);
  duckdb_logical_type any = duckdb_create_logical_type(DUCKDB_TYPE_ANY);
  duckdb_logical_type real = duckdb_create_logical_type(DUCKDB_TYPE_DOUBLE);
  duckdb_scalar_function_set_name(function, name_.c_str());
  duckdb_scalar_function_add_parameter(function, any);
  duckdb_scalar_function_set_return_type(function, real);
  duckdb_destroy_logical_type(&any);
  duckdb_destroy_logical_type(&real);
  duckdb_scalar_function_set_special_handling(function);  // it is given nulls too
  duckdb_scalar_function_set_extra_info(function, this, nullptr);
  duckdb_scalar_function_set_function(function, run);
  engine.add(function);
}

void CountingValues::run(duckdb_function_info info, duckdb_data_chunk input, duckdb_vector output) {
  auto* self = static_cast<CountingValues*>(duckdb_scalar_function_get_extra_info(info));
  self->convert(duckdb_data_chunk_get_vector(input, 0), duckdb_data_chunk_get_size(input),
                static_cast<OBS*>(duckdb_vector_get_data(output)));
}

void CountingValues::convert(duckdb_vector values, std::size_t count, OBS* out) {
  switch (typeOf(values)) {
    case DUCKDB_TYPE_DOUBLE:
      return copyReal<double>(values, count, out);
    case DUCKDB_TYPE_FLOAT:
      return copyReal<float>(values, count, out);
    default: {
      ColumnFaults faults;
      ColumnWriter(0, false).write(values, count, out, 1, faults);
      if (faults.suspect) suspect_ = true;
    }
  }
}

}  // namespace embedded::data
