// Pooling the results of a run over imputations.
//
// Such a run leaves, in the document, the tables of the original data (number 0) and of every
// imputation, told apart by the outermost split variable. Here they get company: rows that combine
// the imputations.
#pragma once

#include "embedded/output/Description.h"
#include "embedded/output/Document.h"
#include "embedded/output/Rubin.h"

namespace embedded::output {

// Adds to every table, behind the imputations, rows whose outermost split value is `pooled`: the
// estimates with their standard errors by Rubin's rules, intervals and tests of the methods that
// have a pooling rule in the description, and beside each estimate the fraction of missing
// information, the relative increase in variance, the relative efficiency and the degrees of
// freedom. Rows of methods without a rule are not pooled; a note names the methods.
void poolImputations(Document& document, const Description& description, PoolingDf df);

}  // namespace embedded::output
