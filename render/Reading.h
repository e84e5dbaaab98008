// Rows of results in words.
//
// A sentence says what the row's cells say and nothing else, in the digits of the table, so that
// it can be pasted where the table does not go. A reading says what a test found for somebody who
// does not know what a p-value is; it speaks of the test as computed, never of truth, size or
// importance.
#pragma once

#include <string>

#include "render/ReaderTable.h"
#include "render/Renderer.h"

namespace render {

// The row as a sentence: what it is about, counts, estimate, interval, statistics, the method.
// Empty when no cell of the row says anything.
std::string rowSentence(const ReaderTable& table, const ReaderRow& row, const Context& context);

// Whether the table's rows are results of tests that can be read.
bool holdsTests(const ReaderTable& table);

// The row's test in plain words; empty when the row has no two-sided probability and no reason why.
std::string testReading(const ReaderTable& table, const ReaderRow& row, const Context& context);

// What the row is about (split group, groups, variables), without its method; and the method.
std::string subjectOf(const ReaderTable& table, const ReaderRow& row);
std::string methodOf(const ReaderTable& table, const ReaderRow& row);

}  // namespace render
