#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "embedded/errors/Error.h"
#include "embedded/messages/MessageFile.h"

namespace embedded::messages {

namespace {

using Bytes = std::vector<unsigned char>;

void append(Bytes& bytes, std::size_t number) {
  for (int i = 0; i < 4; ++i) {
    bytes.push_back(static_cast<unsigned char>(number >> (8 * i) & 0xFF));
  }
}

// A message file of these pairs, sorted by identifier.
Bytes fileOf(const std::vector<std::pair<std::string, std::string>>& pairs) {
  Bytes bytes;
  for (const std::size_t number : {std::size_t{0x950412DE}, std::size_t{0}, pairs.size(),
                                   std::size_t{20}, 20 + 8 * pairs.size()}) {
    append(bytes, number);
  }
  std::string texts;
  const std::size_t textsAt = 20 + 16 * pairs.size();
  const auto addTable = [&](auto member) {
    for (const auto& pair : pairs) {
      append(bytes, (pair.*member).size());
      append(bytes, textsAt + texts.size());
      texts += pair.*member + '\0';
    }
  };
  addTable(&std::pair<std::string, std::string>::first);
  addTable(&std::pair<std::string, std::string>::second);
  bytes.insert(bytes.end(), texts.begin(), texts.end());
  return bytes;
}

TEST(MessageFile, FindsEverySentence) {
  const Bytes bytes = fileOf({{"", "header"}, {"a", "A"}, {"ab", "AB"}, {"c", "C"}});
  const MessageFile file(bytes);
  EXPECT_EQ(file.find("a"), "A");
  EXPECT_EQ(file.find("ab"), "AB");
  EXPECT_EQ(file.find("c"), "C");
  EXPECT_EQ(file.identifiers(), (std::vector<std::string_view>{"a", "ab", "c"}));
}

TEST(MessageFile, HasNothingForOtherIdentifiers) {
  const Bytes bytes = fileOf({{"", "header"}, {"b", "B"}});
  const MessageFile file(bytes);
  for (const char* identifier : {"", "a", "bb", "c"}) {
    EXPECT_EQ(file.find(identifier), std::nullopt) << identifier;
  }
}

TEST(MessageFile, RefusesWhatIsNone) {
  EXPECT_THROW(MessageFile{Bytes()}, Error);
  EXPECT_THROW(MessageFile{Bytes(40, 0)}, Error);
}

// A file cut short anywhere never makes the reader look past its end.
TEST(MessageFile, StaysWithinAFileThatIsCutShort) {
  const Bytes whole = fileOf({{"", "header"}, {"a", "A"}, {"b", "B"}});
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const Bytes bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    try {
      const MessageFile file(bytes);
      file.find("a");
      file.find("b");
      file.identifiers();
    } catch (const Error& error) {
      EXPECT_EQ(error.kind(), ErrorKind::Internal);
    }
  }
}

TEST(MessageFile, RefusesARevisionThatItDoesNotKnow) {
  Bytes bytes = fileOf({{"", "header"}, {"a", "A"}});
  EXPECT_NO_THROW(MessageFile{bytes});
  bytes[4] = 1;
  EXPECT_THROW(MessageFile{bytes}, Error);
}

}  // namespace

}  // namespace embedded::messages
