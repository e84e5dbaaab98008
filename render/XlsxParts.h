// The parts of a workbook until it is packed. The library keeps each in a temporary file of its
// own, and does not look whether the file took, or gave back, all of it: a full disk would cut a
// sheet short without a word. So its function that makes such files is defined anew: parts stay in
// memory.
#pragma once

namespace render {

// Whether memory took all that was written to parts in this thread since the last question.
bool partsAreWhole();

}  // namespace render
