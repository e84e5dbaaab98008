// The first record of a CSV file: its delimiter, its names, and what is refused.
#include "Support.h"
#include "embedded/data/CsvHeader.h"
#include "embedded/data/DataMessages.h"

namespace embedded::data {
namespace {

class CsvHeaders : public DataTest {
 protected:
  CsvHeader read(const std::string& content) const {
    return readCsvHeader(write("data.csv", content), "data.csv", ",;\t|");
  }
  using Names = std::vector<std::string>;
  Names names(const std::string& content) const { return read(content).names; }
  bool hasQuotedEmpty(const std::string& content) const { return read(content).quotedEmpty; }
};

TEST_F(CsvHeaders, QuotedNamesHoldDelimitersAndQuotes) {
  EXPECT_EQ(names("a,\"b\"\n1,2\n"), (Names{"a", "b"}));
  EXPECT_EQ(names("\"a,b\",c\n1,2\n"), (Names{"a,b", "c"}));
  EXPECT_EQ(names("\"say \"\"a\"\"\",c\n1,2\n"), (Names{"say \"a\"", "c"}));
  EXPECT_EQ(names("\"a\nb\",c\n1,2\n"), (Names{"a\nb", "c"})) << "a line feed within quotes";
}

TEST_F(CsvHeaders, ADelimiterWithinQuotesIsNotCounted) {
  const CsvHeader header = read("\"a,b,c\";d\n1;2\n");
  EXPECT_EQ(header.delimiter, ';');
  EXPECT_EQ(header.names, (Names{"a,b,c", "d"}));
}

TEST_F(CsvHeaders, ColumnsWithoutANameGetTheirNumber) {
  EXPECT_EQ(names("a,, c ,\"\"\n1,2,3,4\n"), (Names{"a", "column2", "c", "column4"}));
}

TEST_F(CsvHeaders, AQuotedEmptyFieldStandsBetweenDelimitersOrLineEnds) {
  EXPECT_TRUE(hasQuotedEmpty("a,b\n1,\"\"\n"));
  EXPECT_TRUE(hasQuotedEmpty("a,b\n\"\",1\n"));
  EXPECT_TRUE(hasQuotedEmpty("a,b\r\n1,\"\"\r\n"));
  EXPECT_TRUE(hasQuotedEmpty("a,b\n1,\"\"")) << "where the file ends";
  EXPECT_FALSE(hasQuotedEmpty("a,b\n1,\n")) << "without quotes";
  EXPECT_FALSE(hasQuotedEmpty("a,b\n1,\"x \"\"y\"\" z\"\n")) << "doubled within a text";
  EXPECT_FALSE(hasQuotedEmpty("a,b\n1,\"\"\"y\"\n")) << "doubled where a text begins";
  EXPECT_FALSE(hasQuotedEmpty("\"\",b\n1,2\n")) << "the first name is no value";
}

TEST_F(CsvHeaders, TellsWhereTheLineOfTheHeaderEnds) {
  EXPECT_EQ(read("a,b\r\n1,2\r\n").end, 3U);
  EXPECT_EQ(read("\xEF\xBB\xBF"
                 "a,b\n1,2\n")
                .end,
            6U);
  EXPECT_EQ(read("a,b").end, 3U);
}

TEST_F(CsvHeaders, WhatIsNoHeaderIsRefused) {
  EXPECT_EQ(failureOf([&] { read("\xEF\xBB\xBF"); }).id, messages::emptyFile.id)
      << "a byte order mark alone";
  const Failure nul = failureOf([&] { read(std::string("a\0,b\n1,2\n", 9)); });
  EXPECT_EQ(nul.id, messages::badEncoding.id);
  EXPECT_EQ(nul.arguments, (Names{"data.csv", "1", "1"}));
  const Failure none = failureOf([&] { readCsvHeader(path("none.csv"), "none.csv", ","); });
  EXPECT_EQ(none.id, messages::unreadable.id);
  EXPECT_EQ(none.arguments.front(), "none.csv");
}

}  // namespace
}  // namespace embedded::data
