// A procedure's output: its tables, its notes and its warnings.
#pragma once

#include <memory>
#include <string>

#include "host/Api.h"
#include "host/output/BpCellText.h"
#include "host/output/BpPivotTable.h"

// A heading of the output, under which tables stand.
class HOST_API BpHeading {
 public:
  virtual ~BpHeading();

  // Opens a table. The second title identifies it; `shown` is true when the title is printed.
  // [during run]
  BpPivotTable PivotTable(const BpCellText& title, const BpCellText& identity, bool shown);
};

// The output of one run. Made first and destroyed last; what was written stays with the host.
class HOST_API BpProcedure : public BpHeading {
 public:
  // `kind` says what kind of output block this is; 10 is that of a statistical procedure.
  BpProcedure(const std::string& title, int kind);
  ~BpProcedure() override;
  BpProcedure(const BpProcedure&) = delete;
  BpProcedure& operator=(const BpProcedure&) = delete;

  // A new split group begins with the case just read: its split values are those of everything
  // written from now on. [on a case]
  void SplitChange();

  // Formats of counts, of statistics, and of a number shown with just the digits it has.
  static BpFormatSpec Count();
  static BpFormatSpec GeneralStat();
  static BpFormatSpec SigDigit(double value);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

// Where a warning is shown, and how grave it is.
enum BpErrorShow { BpErrorShowNowhere = 0, BpErrorShowLog = 1, BpErrorShowOutput = 2 };
enum BpErrorLevel { BpErrorNote = 1, BpErrorWarning = 2, BpErrorSerious = 3 };

// Issues a warning about the data; processing goes on. [during run]
HOST_API void BpError(const BpCellText& text, BpErrorShow show, BpErrorLevel level);

// Adds a row to the notes of the run. `kind` 4 is a setting of the command, 0 a fact of the data.
// [after parse]
HOST_API void AddNotes(int kind, const BpCellText& label, const BpCellText& text);
