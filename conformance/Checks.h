// The checks, by the folders of the host interface.
#pragma once

#include "conformance/Host.h"
#include "conformance/Report.h"

namespace conformance {

// All of them. A host call that throws is a finding, and ends its group of checks.
void checkAll(Host& host, Report& report);

// Inside a run, at its beginning.
void checkDistributions(Report& report);
void checkTexts(Report& report);
void checkNumbers(Report& report);
void checkDictionary(const Sample& data, Report& report);

// A run each, with a command of the kit's own.
void checkParser(Host& host, Report& report);
void checkValidators(Host& host, Report& report);
void checkCases(Host& host, Report& report);
void checkObservationMap(Host& host, Report& report);
void checkOutput(Host& host, Report& report);

// A command of the kit's own that any description of it accepts.
inline constexpr const char* plainCommand = "CHECKHOST /LIST v s";

// Carries out one run; what it throws becomes a finding of this contract.
void runChecked(Host& host, const std::string& command, Report& report, const char* contract,
                const std::function<void()>& procedure);

}  // namespace conformance
