// Reading of reference values, errors in ulp, and the report of them that gates.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace accuracy {

// A file of comma-separated fields: one row a line, fields by the names of the first line.
class Rows {
 public:
  // A file in the folder of references.
  explicit Rows(const std::string& file);

  std::size_t size() const { return rows_.size(); }
  const std::string& text(std::size_t row, const std::string& name) const;
  double number(std::size_t row, const std::string& name) const;

 private:
  std::map<std::string, std::size_t> places_;
  std::vector<std::vector<std::string>> rows_;
};

// |got - (head + rest)| in units of the gap above |head|, to a fraction of one; infinite when got
// is no number. A value of 0 must be met exactly, or to 1e-15 where cancellation may leave that.
double ulps(double got, double head, double rest);

// The errors of one function or method.
class Errors {
 public:
  void add(double error) { errors_.push_back(error); }

  std::size_t count() const { return errors_.size(); }
  double largest() const;
  // The error that all but one in a thousand do not exceed.
  double mostly() const;

 private:
  std::vector<double> errors_;
};

// Errors by name. Prints one line each, and expects (as a test) that none exceeds what the file of
// accepted errors says, nor that a name lacks a line there.
class Report {
 public:
  void add(const std::string& name, double error) { errors_[name].add(error); }
  void printAndExpect(const std::string& title) const;

 private:
  std::map<std::string, Errors> errors_;
};

}  // namespace accuracy
