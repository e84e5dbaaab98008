// What a document says of the way its cases were read: one sentence for each reason.
#include <gtest/gtest.h>

#include <string>

#include "embedded/output/Values.h"
#include "embedded/session/Reading.h"

namespace embedded {
namespace {

using data::Delivery;

// The note on data of some cases, as its identifier filled with the numbers that belong to it.
std::string noteOn(const Delivery& delivery, const Request& request = {}) {
  output::Document document;
  document.data.cases.read = 10;
  noteReading(document, request, delivery);
  return output::machineText(*document.data.reading);
}

Delivery delivered(bool asPatterns, Delivery::Why why) {
  Delivery delivery;
  delivery.asPatterns = asPatterns;
  delivery.why = why;
  delivery.patterns = 7;
  delivery.sampled = 100;
  delivery.columns = 40;
  return delivery;
}

TEST(Reading, SaysWhyCasesCameAsPatterns) {
  EXPECT_EQ(noteOn(delivered(true, Delivery::Why::Asked)), "Read as patterns as asked 7 ...");
  EXPECT_EQ(noteOn(delivered(true, Delivery::Why::Sample)), "Read as patterns by sample 7 100 ...");
  Request resampled;
  resampled.bootstrap.emplace();
  EXPECT_EQ(noteOn(delivered(true, Delivery::Why::Asked), resampled),
            "Read as patterns for bootstrap 7 ...");
}

TEST(Reading, SaysWhyCasesCameOneByOne) {
  EXPECT_EQ(noteOn(delivered(false, Delivery::Why::Asked)), "Read case by case as asked ...");
  EXPECT_EQ(noteOn(delivered(false, Delivery::Why::Sample)), "Read case by case by sample 100 ...");
  EXPECT_EQ(noteOn(delivered(false, Delivery::Why::ManyColumns)),
            "Read case by case many columns 40 " + std::to_string(Delivery::mostColumns) + " ...");
  EXPECT_EQ(noteOn(delivered(false, Delivery::Why::ManyPatterns)),
            "Read case by case many patterns ...");
}

TEST(Reading, SaysNothingOfDataWithoutCases) {
  output::Document document;
  noteReading(document, {}, delivered(true, Delivery::Why::Asked));
  EXPECT_EQ(document.data.reading, nullptr);
}

}  // namespace
}  // namespace embedded
