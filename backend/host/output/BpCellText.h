// Cell texts: what labels, titles, messages and number cells are made of.
//
// A procedure makes each as a short-lived value and passes it by reference; the host copies what
// it keeps. The boolean of BpString and BpComposite is true for a text that the host may look
// up in its catalogue and translate.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "host/Api.h"
#include "host/data/KORA_Variable.h"

// What a host keeps of a text; defined by the host.
struct BpTextContent;
// A text that outlives the object it was made from.
using BpTextHandle = std::shared_ptr<const BpTextContent>;

class HOST_API BpCellText {
 public:
  virtual ~BpCellText();

  // A lasting copy of the text. [during run]
  virtual BpTextHandle Replicate() const = 0;
};

// A text without placeholders.
class HOST_API BpString : public BpCellText {
 public:
  BpString(std::string_view text, bool translatable);
  ~BpString() override;
  BpTextHandle Replicate() const override;

 private:
  BpTextHandle content_;
};

// How a number is to be shown.
struct BpFormatSpec {
  enum Kind : std::int32_t {
    CountFormat = 0,        // a whole number
    GeneralStatFormat = 1,  // a statistic, in the host's general way
    SigDigitFormat = 2      // with the digits that the number has, no more
  };
  Kind kind = GeneralStatFormat;

  friend bool operator==(const BpFormatSpec&, const BpFormatSpec&) = default;
};

// A number; MCMV::Missing is shown as missing.
class HOST_API BpNumber : public BpCellText {
 public:
  BpNumber(double value, BpFormatSpec format) : value_(value), format_(format) {}
  ~BpNumber() override;
  BpTextHandle Replicate() const override;

  double value() const { return value_; }
  BpFormatSpec format() const { return format_; }

 private:
  double value_;
  BpFormatSpec format_;
};

// A variable inside a label or a message.
class HOST_API BpVariable : public BpCellText {
 public:
  enum Show { ShowName = 0, ShowLabel = 1, ShowAsPreferred = 2 };

  // `variable` must live as long as the data source.
  BpVariable(const KORA_Variable& variable, Show show);
  ~BpVariable() override;
  BpTextHandle Replicate() const override;

 private:
  BpTextHandle content_;
};

// A value of a variable inside a label.
class HOST_API BpDataValue : public BpCellText {
 public:
  // PlainValue: a computed number, shown by the variable's format. LabelAsPreferred: a value
  // that occurs in the data, shown through its value label as the host prefers.
  enum Preference { PlainValue = 0, ValueLabel = 1, LabelAsPreferred = 2 };

  BpDataValue(const KORA_Variable& variable, double value, Preference preference);
  BpDataValue(const KORA_Variable& variable, std::string_view value, Preference preference);
  ~BpDataValue() override;
  BpTextHandle Replicate() const override;

 private:
  BpTextHandle content_;
};

// A template with arguments: ^1 is the first one; "[%1:, ^1:]2" prints the list that is the second
// one, its first item by the part after %, each further item by the part after ^. Arguments are
// added in order, and Finish() comes last.
class HOST_API BpComposite : public BpCellText {
 public:
  BpComposite(std::string_view text, bool translatable);
  ~BpComposite() override;
  BpComposite(const BpComposite&) = delete;
  BpComposite& operator=(const BpComposite&) = delete;

  void Add(const BpCellText& argument);
  // What is added between these two is one argument, a list.
  void Sublist();
  void EndSublist();
  // Puts in the current split variables and values, as pairs of one list. [on a split group]
  void SplitList();
  void Finish();
  BpTextHandle Replicate() const override;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

// A footnote to attach: the text, then two fields that procedures leave at these values.
struct BpAnnotation {
  BpTextHandle text;
  std::int32_t reference = -1;
  std::int32_t flags = 0;
};
