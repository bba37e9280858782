#pragma once
#include <platform/ado/embedded/row_source.h>

namespace ado20::embedded {

/// The rows of a schema rowset (`SchemaEnum`); 3251 for one that there is not.
RowSource schemaSource(Database& database, SchemaEnum schema);

}  // namespace ado20::embedded
