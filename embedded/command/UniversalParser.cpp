// The parser: reads a command by its description alone. What it does not understand it reports and
// passes over, so that one reading names every mistake.
#include "host/command/UniversalParser.h"

#include <utility>

#include "embedded/command/Descriptors.h"
#include "embedded/command/Names.h"
#include "embedded/command/ParsedCommand.h"
#include "embedded/command/ValueReader.h"
#include "embedded/session/Session.h"

using embedded::command::Cursor;
using embedded::command::findName;
using embedded::command::Lexeme;
using embedded::command::LexKind;
using embedded::command::namesOf;
using embedded::command::ParsedParam;
using embedded::command::ParsedSubcommand;
using embedded::command::ValueReader;
namespace messages = embedded::command::messages;

struct KORA_TokenSequence::Impl {
  embedded::command::Lexed lexed;
};

KORA_TokenSequence::KORA_TokenSequence(bool current) : impl_(std::make_unique<Impl>()) {
  if (current) {
    impl_->lexed = embedded::command::lex(embedded::Session::current().commandText);
  }
}
KORA_TokenSequence::~KORA_TokenSequence() = default;

namespace {

class CommandReader {
 public:
  CommandReader(const embedded::command::Lexed& lexed, const CommandDescriptor::Impl& description,
                CommandSpec::Impl& result)
      : cursor_(lexed), description_(description), result_(result) {}

  // False when the command is not as described; what is wrong has been reported then.
  bool read() {
    if (readCommandName()) {
      while (!cursor_.atEnd()) {
        readSubcommand();
      }
      requireSubcommands();
    }
    cursor_.tell();
    return !cursor_.failed();
  }

 private:
  bool readCommandName() {
    if (cursor_.atEnd() || cursor_.here().kind != LexKind::Word) {
      cursor_.fail(messages::noCommand, {description_.name}, cursor_.place());
      return false;
    }
    const Lexeme word = cursor_.take();
    if (!findName({{description_.name}}, word.text).name.empty()) {
      return true;
    }
    cursor_.fail(messages::unknownCommand, {word.text, description_.name}, word.place,
                 description_.name);
    return false;
  }

  // The slash of the first may be left out; all others were read up to theirs.
  void readSubcommand() {
    if (cursor_.is(LexKind::Slash)) {
      cursor_.take();
    }
    if (cursor_.atEnd()) {
      cursor_.fail(messages::nothingAfterSlash, {}, cursor_.place());
      return;
    }
    if (!cursor_.is(LexKind::Word)) {
      cursor_.fail(messages::slashWanted, {cursor_.here().text}, cursor_.place());
      cursor_.skipSubcommand();
      return;
    }
    const Lexeme word = cursor_.take();
    const auto names = namesOf(description_.subcommands);
    const auto found = findName(names, word.text);
    if (found.name.empty()) {
      cursor_.failName(messages::unknownSubcommand, {word.text}, word, found, names);
      cursor_.skipSubcommand();
      return;
    }
    readBody(description_.subcommands[found.index].impl(), word);
  }

  void readBody(const SubComDescriptor::Impl& description, const Lexeme& word) {
    auto subcommand = std::make_unique<ParsedSubcommand>();
    subcommand->name = description.name;
    subcommand->written = word.text;
    subcommand->place = word.place;
    for (const auto& known : result_.subcommands) {
      if (known->name == description.name && !description.repeatable) {
        cursor_.fail(messages::subcommandTwice, {description.name}, word.place);
      }
    }
    readList(description, *subcommand);
    while (!cursor_.atSubcommandEnd()) {
      readParameter(description, *subcommand);
    }
    result_.subcommands.push_back(std::move(subcommand));
  }

  void readList(const SubComDescriptor::Impl& description, ParsedSubcommand& subcommand) {
    if (!description.hasList) {
      if (!cursor_.atValueEnd()) {
        cursor_.fail(messages::listRefused, {description.name, cursor_.here().text},
                     cursor_.place());
        cursor_.skipValue();
      }
      return;
    }
    auto list = std::make_unique<ParsedParam>();
    list->place = subcommand.place;
    list->tokens = ValueReader(cursor_).variableList();
    if (!list->tokens.empty()) {
      subcommand.list = std::move(list);
    } else if (description.listRequired) {
      cursor_.fail(messages::listWanted, {description.name}, subcommand.place);
    }
  }

  // At `NAME =`: what stands before it was read as a list, or as the value of another.
  void readParameter(const SubComDescriptor::Impl& description, ParsedSubcommand& subcommand) {
    const Lexeme word = cursor_.take();
    cursor_.take();  // the equals sign
    const auto names = namesOf(description.parameters);
    const auto found = findName(names, word.text);
    if (found.name.empty()) {
      cursor_.failName(messages::unknownParameter, {word.text, description.name}, word, found,
                       names);
      cursor_.skipValue();
      return;
    }
    const auto& parameter = description.parameters[found.index].impl();
    if (subcommand.getParamObj(parameter.name) != nullptr && !parameter.repeatable) {
      cursor_.fail(messages::parameterTwice, {parameter.name, description.name}, word.place);
    }
    subcommand.parameters.push_back(ValueReader(cursor_).parameter(parameter, word.place));
  }

  void requireSubcommands() {
    for (const SubComDescriptor& subcommand : description_.subcommands) {
      bool stands = !subcommand.impl().required;
      for (const auto& known : result_.subcommands) {
        stands = stands || known->name == subcommand.impl().name;
      }
      if (!stands) {
        cursor_.fail(messages::subcommandMissing, {subcommand.impl().name}, cursor_.place());
      }
    }
  }

  Cursor cursor_;
  const CommandDescriptor::Impl& description_;
  CommandSpec::Impl& result_;
};

}  // namespace

struct UniversalParser::Impl {
  const KORA_TokenSequence& tokens;
  CommandSpec& result;
  const CommandDescriptor& description;
};

UniversalParser::UniversalParser(const KORA_TokenSequence& tokens, CommandSpec& result,
                                 const CommandDescriptor& description)
    : impl_(std::make_unique<Impl>(Impl{tokens, result, description})) {}
UniversalParser::~UniversalParser() = default;

int UniversalParser::getCommandSpecifications() {
  const auto& lexed = impl_->tokens.impl().lexed;
  const bool read = CommandReader(lexed, impl_->description.impl(), impl_->result.impl()).read();
  embedded::Session& session = embedded::Session::current();
  for (const auto& subcommand : impl_->result.impl().subcommands) {
    for (const auto& parameter : subcommand->parameters) {
      if (double value = 0.0; parameter->getNumberValue(value)) {
        session.givenNumbers.push_back({subcommand->name, parameter->name, value});
      }
    }
  }
  if (!lexed.lexemes.empty()) {
    session.commandFocus = lexed.lexemes.front().place;
  }
  return read ? 0 : 1;
}
