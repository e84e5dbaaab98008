// Where the switches of the diagnostic output live in a diagnostic build; the module only reads
// them.
#include "proportionsFlags.h"

#ifdef PROPORTIONS_DIAGNOSTIC
bool gDisplaySpecs = false;
bool gDisplayAlgorithm = false;
bool gProbeFindNCParamT = false;
#endif
