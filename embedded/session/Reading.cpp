#include "embedded/session/Reading.h"

namespace embedded {

namespace {

using data::Delivery;
using output::Text;
using output::TextPtr;

template <class Number>
TextPtr count(Number number) {
  return Text::number(static_cast<double>(number), output::NumberFormat::Count);
}

TextPtr reasonForPatterns(const Request& request, const Delivery& delivery) {
  if (delivery.why == Delivery::Why::Sample) {
    return Text::composite("Read as patterns by sample ^1 ^2 ...",
                           {count(delivery.patterns), count(delivery.sampled)});
  }
  return Text::composite(request.bootstrap ? "Read as patterns for bootstrap ^1 ..."
                                           : "Read as patterns as asked ^1 ...",
                         {count(delivery.patterns)});
}

TextPtr reasonForCases(const Request& request, const Delivery& delivery) {
  switch (delivery.why) {
    case Delivery::Why::Asked:
      break;
    case Delivery::Why::Sample:
      return Text::composite("Read case by case by sample ^1 ...", {count(delivery.sampled)});
    case Delivery::Why::ManyColumns:
      return Text::composite("Read case by case many columns ^1 ^2 ...",
                             {count(delivery.columns), count(Delivery::mostColumns)});
    case Delivery::Why::ManyPatterns:
      return Text::string("Read case by case many patterns ...");
  }
  return Text::string(request.diagnostics ? "Read case by case for dumps ..."
                                          : "Read case by case as asked ...");
}

}  // namespace

void noteReading(output::Document& document, const Request& request, const Delivery& delivery) {
  if (document.data.cases.read == 0) {
    return;
  }
  document.data.reading = delivery.asPatterns ? reasonForPatterns(request, delivery)
                                              : reasonForCases(request, delivery);
}

}  // namespace embedded
