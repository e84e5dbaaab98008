// Addresses of data: what is a file, what is a server, and what is neither.
#include "Support.h"
#include "embedded/data/DataMessages.h"
#include "embedded/data/EngineMessages.h"
#include "embedded/data/Engines.h"

namespace embedded::data {
namespace {

using Addresses = DataTest;
using Arguments = std::vector<std::string>;

ServerAddress serverOf(const std::string& text) {
  return parseAddress(text).server.value();
}

Failure refusal(const std::string& text) {
  return failureOf([&] { parseAddress(text); });
}

TEST_F(Addresses, OfServersAreTakenApart) {
  const ServerAddress address =
      serverOf("postgresql://a%20b@db.example.org:5433/my%2Fdata/trial.main?sslmode=require");
  EXPECT_EQ(address.scheme, "postgresql");
  EXPECT_EQ(address.user, "a b");
  EXPECT_EQ(address.host, "db.example.org");
  EXPECT_EQ(address.port, 5433);
  EXPECT_EQ(address.database, "my/data");
  EXPECT_EQ(address.schema, "trial");
  EXPECT_EQ(address.table, "main");
  EXPECT_EQ(address.parameters,
            (std::vector<std::pair<std::string, std::string>>{{"sslmode", "require"}}));
}

TEST_F(Addresses, HostsMayStandInBrackets) {
  EXPECT_EQ(serverOf("clickhouse://[::1]/d/t").host, "::1");
  EXPECT_EQ(serverOf("clickhouse://[::1]/d/t").port, 8123);
  EXPECT_EQ(serverOf("clickhouse://[::1]:9000/d/t").port, 9000);
  EXPECT_EQ(refusal("clickhouse://[::1/d/t").id, messages::badServerAddress.id);
}

TEST_F(Addresses, MalformedOnesOfServersAreWrongUsage) {
  for (const std::string text :
       {"clickhouse://h:80x/d/t", "clickhouse://h:x/d/t", "clickhouse://h:0/d/t",
        "clickhouse://h:65536/d/t", "clickhouse://h:/d/t", "clickhouse://h/d", "clickhouse://h",
        "clickhouse://h/d/t/more", "clickhouse://h/d/t#part", "clickhouse:///d/t",
        "clickhouse://h//t", "clickhouse://h/d/", "clickhouse://@h/d/t", "clickhouse://h/d/.t",
        "clickhouse://h/d/%zz", "clickhouse://h/d/%0", "clickhouse://h/d/%00"}) {
    const Failure failure = refusal(text);
    EXPECT_EQ(failure.id, messages::badServerAddress.id) << text;
    EXPECT_EQ(failure.kind, ErrorKind::Usage) << text;
  }
}

TEST_F(Addresses, DoNotEndAtAZeroByte) {
  const std::string rest("\0.csv", 5);
  const std::string file = write("a.csv", "v\n1\n") + rest;
  EXPECT_EQ(refusal(file).id, messages::noSuchFile.id);
  EXPECT_EQ(refusal(path("*.csv") + rest).id, messages::noSuchFile.id);
  EXPECT_EQ(refusal("clickhouse://u:secret@h/d/t" + rest).arguments,
            Arguments{"clickhouse://u@h/d/t" + rest});
}

TEST_F(Addresses, OfOtherNetworksAreRefused) {
  for (const std::string text : {"https://example.org/x.csv", "svn+ssh://h/d/t", "a.b://h/d/t"}) {
    EXPECT_EQ(refusal(text).id, messages::refusedUrl.id) << text;
    EXPECT_EQ(refusal(text).arguments, Arguments{text});
  }
}

TEST_F(Addresses, WhatHasNoWordInFrontIsAPath) {
  for (const std::string text : {"://h/d/t", "my data://h/d/t", "a-b://h/d/t"})
    EXPECT_EQ(refusal(text).id, messages::noSuchFile.id) << text;
}

TEST_F(Addresses, OnlyDatabaseFilesHaveTables) {
  const std::string file = write("d.duckdb", "x");
  EXPECT_EQ(parseAddress(file + "?table=cases").table, "cases");
  EXPECT_EQ(parseAddress(file + "?table=cases").files, Arguments{file});
  const std::string csv = write("d.csv", "x") + "?table=cases";
  EXPECT_EQ(refusal(csv).id, messages::noSuchFile.id);
  EXPECT_EQ(parseAddress(write("d.csv?table=a.csv", "x")).table, "") << "a name of a file";
}

TEST_F(Addresses, AnEngineWithoutItsLibraryIsNamedWithTheReason) {
  ServerAddress address;
  address.scheme = "no-such-engine";
  const Failure failure = failureOf([&] { connectServer(address, {"no-such-engine://h/d/t"}); });
  EXPECT_EQ(failure.id, messages::noEngineLibrary.id);
  EXPECT_EQ(failure.kind, ErrorKind::Data);
  ASSERT_EQ(failure.arguments.size(), 2U);
  EXPECT_EQ(failure.arguments[0], "no-such-engine://h/d/t");
  EXPECT_NE(failure.arguments[1].find("no-such-engine.so"), std::string::npos);
}

}  // namespace
}  // namespace embedded::data
