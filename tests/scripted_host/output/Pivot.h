// What stands behind a table's handle.
#pragma once

#include <memory>

#include "host/output/BpPivotTable.h"
#include "scripted_host/session/Log.h"

struct BpPivotTable::Impl {
  std::shared_ptr<scripted::Table> table;
};
