// Messages about data that hold no valid case.
#pragma once

#include "host/Api.h"
#include "host/data/ProcedureDataSource.h"

class HOST_API ACAInpAdaptMsg {
 public:
  // `source` must outlive the object.
  explicit ACAInpAdaptMsg(const ProcedureDataSource& source) : source_(&source) {}

  // Warning: the data hold no valid case. [during run]
  void NoValidCases() const;
  // Warning: the current split group holds none; the host adds the split values. [during run]
  void NoValidCasesSplit() const;

 private:
  const ProcedureDataSource* source_;
};
