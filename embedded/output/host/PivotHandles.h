// What stands behind the pivot table handles of the host interface: indices into the document.
#pragma once

#include "embedded/output/Document.h"
#include "host/output/BpPivotTable.h"

struct BpPivotTable::Impl {
  embedded::output::Index table;
};

// A group; node 0 is the dimension itself.
struct BpGroup::Impl {
  embedded::output::Index table;
  embedded::output::Index dimension;
  embedded::output::Index node;
};

struct BpCategory::Impl {
  embedded::output::Index table;
  embedded::output::Index dimension;
  embedded::output::Index node;
};
