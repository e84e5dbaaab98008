// The help that --help prints, in the reader's language.
#pragma once

#include <CLI/App.hpp>
#include <CLI/FormatterFwd.hpp>
#include <cstddef>
#include <string>

#include "render/Renderer.h"

namespace cli {

// Descriptions of options and subcommands are identifiers; the help holds their sentences. The
// name of an option's value may carry what is allowed, as "TAG:{en,de}" or "N:[1 - 9]".
class Help final : public CLI::FormatterBase {
 public:
  // `sentences` must outlive the object; `width` is that of a line, in columns.
  Help(const embedded::output::Sentences& sentences, int width);

  std::string make_help(const CLI::App* app, std::string name,
                        CLI::AppFormatMode mode) const override;

 private:
  std::string entry(const std::string& name, const std::string& text) const;
  std::string usage(const CLI::App& app, const std::string& name) const;
  std::string textOf(const CLI::Option& option) const;

  render::Context context_;
  std::size_t textWidth_;  // of the descriptions
};

}  // namespace cli
