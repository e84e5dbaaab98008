// The functions of the embedded engine's C interface, under their own names, by way of a library
// that is loaded when the first of them is called: a run that opens no file does without it, and
// starts in a fraction of the time.
//
// Inside this namespace a name means the function below; elsewhere it is that of duckdb.h, which
// nothing defines. A function that is not in the list does not link.
#pragma once

#include <duckdb.h>

namespace embedded::data {

#define EMBEDDED_DUCKDB_FUNCTIONS(X)                \
  X(duckdb_aggregate_function_add_parameter)        \
  X(duckdb_aggregate_function_get_extra_info)       \
  X(duckdb_aggregate_function_set_destructor)       \
  X(duckdb_aggregate_function_set_error)            \
  X(duckdb_aggregate_function_set_extra_info)       \
  X(duckdb_aggregate_function_set_functions)        \
  X(duckdb_aggregate_function_set_name)             \
  X(duckdb_aggregate_function_set_return_type)      \
  X(duckdb_aggregate_function_set_special_handling) \
  X(duckdb_bind_blob)                               \
  X(duckdb_close)                                   \
  X(duckdb_column_count)                            \
  X(duckdb_connect)                                 \
  X(duckdb_create_aggregate_function)               \
  X(duckdb_create_config)                           \
  X(duckdb_create_logical_type)                     \
  X(duckdb_create_scalar_function)                  \
  X(duckdb_data_chunk_get_size)                     \
  X(duckdb_data_chunk_get_vector)                   \
  X(duckdb_decimal_internal_type)                   \
  X(duckdb_decimal_scale)                           \
  X(duckdb_destroy_aggregate_function)              \
  X(duckdb_destroy_config)                          \
  X(duckdb_destroy_data_chunk)                      \
  X(duckdb_destroy_logical_type)                    \
  X(duckdb_destroy_pending)                         \
  X(duckdb_destroy_prepare)                         \
  X(duckdb_destroy_result)                          \
  X(duckdb_destroy_scalar_function)                 \
  X(duckdb_disconnect)                              \
  X(duckdb_double_to_hugeint)                       \
  X(duckdb_double_to_uhugeint)                      \
  X(duckdb_execute_pending)                         \
  X(duckdb_fetch_chunk)                             \
  X(duckdb_free)                                    \
  X(duckdb_get_type_id)                             \
  X(duckdb_hugeint_to_double)                       \
  X(duckdb_interrupt)                               \
  X(duckdb_open_ext)                                \
  X(duckdb_pending_error)                           \
  X(duckdb_pending_execute_task)                    \
  X(duckdb_pending_execution_is_finished)           \
  X(duckdb_pending_prepared_streaming)              \
  X(duckdb_prepare)                                 \
  X(duckdb_prepare_error)                           \
  X(duckdb_query)                                   \
  X(duckdb_query_progress)                          \
  X(duckdb_register_aggregate_function)             \
  X(duckdb_register_scalar_function)                \
  X(duckdb_result_error)                            \
  X(duckdb_row_count)                               \
  X(duckdb_scalar_function_add_parameter)           \
  X(duckdb_scalar_function_get_extra_info)          \
  X(duckdb_scalar_function_set_extra_info)          \
  X(duckdb_scalar_function_set_function)            \
  X(duckdb_scalar_function_set_name)                \
  X(duckdb_scalar_function_set_return_type)         \
  X(duckdb_scalar_function_set_special_handling)    \
  X(duckdb_set_config)                              \
  X(duckdb_string_t_data)                           \
  X(duckdb_string_t_length)                         \
  X(duckdb_uhugeint_to_double)                      \
  X(duckdb_value_varchar)                           \
  X(duckdb_vector_get_column_type)                  \
  X(duckdb_vector_get_data)                         \
  X(duckdb_vector_get_validity)

// Where the functions stand in the library.
struct DuckDbLibrary {
// NOLINTNEXTLINE(bugprone-macro-parentheses): a name that is declared
#define EMBEDDED_DUCKDB_POINTER(name) decltype(&::name) name = nullptr;
  EMBEDDED_DUCKDB_FUNCTIONS(EMBEDDED_DUCKDB_POINTER)
#undef EMBEDDED_DUCKDB_POINTER
};

// Loads the library at the first call, for good. Throws EngineFailure with the system's own words
// when it cannot be loaded, or lacks a function.
const DuckDbLibrary& duckDbLibrary();

template <auto Member>
struct DuckDbFunction;

template <class Result, class... Arguments, Result (*DuckDbLibrary::*Member)(Arguments...)>
struct DuckDbFunction<Member> {
  using Pointer = Result (*)(Arguments...);

  Result operator()(Arguments... arguments) const {
    return (duckDbLibrary().*Member)(arguments...);
  }
  // NOLINTNEXTLINE(google-explicit-constructor): as the name of a function turns into one
  operator Pointer() const { return duckDbLibrary().*Member; }
};

#define EMBEDDED_DUCKDB_FUNCTION(name) inline constexpr DuckDbFunction<&DuckDbLibrary::name> name{};
EMBEDDED_DUCKDB_FUNCTIONS(EMBEDDED_DUCKDB_FUNCTION)
#undef EMBEDDED_DUCKDB_FUNCTION

}  // namespace embedded::data
