// The table of formats.
#include <gtest/gtest.h>

#include <set>

#include "render/Renderer.h"

namespace {

TEST(Formats, TextIsTheDefault) {
  EXPECT_EQ(render::formats().front().name, "text");
}

TEST(Formats, HaveNamesOfTheirOwn) {
  std::set<std::string_view> names;
  for (const render::Format& format : render::formats()) {
    EXPECT_TRUE(names.insert(format.name).second) << format.name;
    EXPECT_EQ(render::findFormat(format.name), &format);
    EXPECT_NE(format.render, nullptr);
  }
}

TEST(Formats, AreTakenFromTheEndingOfAFile) {
  EXPECT_EQ(render::formatOfFile("out/results.csv")->name, "csv");
  EXPECT_EQ(render::formatOfFile("a.b.json")->name, "json");
  EXPECT_EQ(render::formatOfFile("results"), nullptr);
  EXPECT_EQ(render::formatOfFile("results.exe"), nullptr);
  EXPECT_EQ(render::formatOfFile("dir.csv/results"), nullptr);
}

TEST(Formats, AreNotFoundByOtherNames) {
  EXPECT_EQ(render::findFormat(""), nullptr);
  EXPECT_EQ(render::findFormat("pdf"), nullptr);
}

}  // namespace
