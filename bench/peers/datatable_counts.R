# The default analysis of a CSV file with data.table: counts, intervals, tests.
#
#   Rscript datatable_counts.R THREADS FILE COLUMN...
#
# Prints the successes (values of 1) of each column.
suppressMessages(library(data.table))
arguments <- commandArgs(trailingOnly = TRUE)
setDTthreads(as.integer(arguments[1]))
columns <- arguments[-(1:2)]
data <- fread(arguments[2], select = columns, showProgress = FALSE)
for (column in columns) {
  counts <- data[!is.na(get(column)), .N, by = c(column)]
  trials <- sum(counts$N)
  successes <- counts[get(column) == max(get(column)), N]
  binom.test(successes, trials, 0.5)
  prop.test(successes, trials, 0.5, correct = FALSE)
  prop.test(successes, trials, 0.5, correct = TRUE)
  cat(successes, "\n", sep = "")
}
