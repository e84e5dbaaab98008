// The types of PostgreSQL: what they are to us, how their columns are asked for, and how their
// values lie in binary form.
#pragma once

#include <libpq-fe.h>

#include <string>

#include "embedded/data/SqlServer.h"

namespace embedded::engines {

// What a column of this type is. `isEnumeration` for the types that users list the values of.
data::ColumnKind postgreSqlKind(Oid type, bool isEnumeration);

// How a column is asked for; `type` is its own.
data::SqlColumn postgreSqlColumn(const data::Column& column, Oid type, bool asText);

// The value of a field of a binary result. A type that no query asks for is read as a text.
data::SqlValue postgreSqlValue(const PGresult* result, int row, int field);

}  // namespace embedded::engines
