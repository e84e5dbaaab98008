// What a document says of the way its cases were read.
#pragma once

#include "embedded/data/RelationCases.h"
#include "embedded/output/Document.h"
#include "embedded/session/Run.h"

namespace embedded {

// Notes whether cases came as patterns or one by one, and what decided it; nothing of data without
// cases. What the note says depends on data and request alone.
void noteReading(output::Document& document, const Request& request,
                 const data::Delivery& delivery);

}  // namespace embedded
