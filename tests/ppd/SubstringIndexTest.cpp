// SPDX-License-Identifier: MIT
#include "ppd/SubstringIndex.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

using namespace std::string_view_literals;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(SubstringIndex, FindsNothingAtFirst) {
  SubstringIndex index;
  EXPECT_EQ(index.firstContaining("a"), std::nullopt);
  EXPECT_THAT(index.allContaining("a"), IsEmpty());
}

TEST(SubstringIndex, NumbersTextsFromZero) {
  SubstringIndex index;
  EXPECT_EQ(index.add("abc"), 0U);
  EXPECT_EQ(index.add(""), 1U);
  EXPECT_EQ(index.add("abc"), 2U);
}

TEST(SubstringIndex, FindsAPartAnywhere) {
  SubstringIndex index;
  index.add("RGB.Plain.300dpi");
  index.add("CMYK.Glossy.300dpi");
  EXPECT_THAT(index.allContaining("Plain"), ElementsAre(0));
  EXPECT_THAT(index.allContaining("300dpi"), ElementsAre(0, 1));
  EXPECT_THAT(index.allContaining("CMYK.Glossy.300dpi"), ElementsAre(1));
  EXPECT_THAT(index.allContaining("CMYK.Glossy.300dpi "), IsEmpty());
  EXPECT_THAT(index.allContaining("plain"), IsEmpty());
  EXPECT_EQ(index.firstContaining("300dpi"), 0U);
  EXPECT_EQ(index.firstContaining("Gloss"), 1U);
  EXPECT_EQ(index.firstContaining("Glass"), std::nullopt);
}

TEST(SubstringIndex, TheEmptyStringIsContainedInNothing) {
  SubstringIndex index;
  index.add("abc");
  index.add("");
  EXPECT_THAT(index.allContaining(""), IsEmpty());
  EXPECT_EQ(index.firstContaining(""), std::nullopt);
}

TEST(SubstringIndex, NamesATextOnceHoweverOftenThePartStandsInIt) {
  SubstringIndex index;
  index.add("aaaa");
  EXPECT_THAT(index.allContaining("a"), ElementsAre(0));
  EXPECT_THAT(index.allContaining("aa"), ElementsAre(0));
}

TEST(SubstringIndex, PartsDoNotReachFromOneTextIntoTheNext) {
  SubstringIndex index;
  index.add("ab");
  index.add("cd");
  EXPECT_THAT(index.allContaining("bc"), IsEmpty());
  EXPECT_EQ(index.firstContaining("bc"), std::nullopt);
}

TEST(SubstringIndex, BytesOfAnyValueAreFound) {
  SubstringIndex index;
  index.add("caf\xC3\xA9"sv);
  index.add("a\0b"sv);
  EXPECT_THAT(index.allContaining("\xA9"sv), ElementsAre(0));
  EXPECT_THAT(index.allContaining("\0"sv), ElementsAre(1));
}

TEST(SubstringIndex, RemovedTextsAreNotFoundByAllContaining) {
  SubstringIndex index;
  index.add("abc");
  index.add("abd");
  index.remove(0);
  EXPECT_THAT(index.allContaining("ab"), ElementsAre(1));
  EXPECT_THAT(index.allContaining("abc"), IsEmpty());
  index.remove(1);
  EXPECT_THAT(index.allContaining("ab"), IsEmpty());
  EXPECT_THAT(index.allContaining("ab"), IsEmpty());
}

TEST(SubstringIndex, FirstContainingCountsRemovedTexts) {
  SubstringIndex index;
  index.add("abc");
  index.add("abd");
  index.remove(0);
  EXPECT_EQ(index.firstContaining("ab"), 0U);
}

TEST(SubstringIndex, TextsAddedAfterARemovalAreFound) {
  SubstringIndex index;
  index.add("abc");
  index.remove(0);
  ASSERT_THAT(index.allContaining("abc"), IsEmpty());
  ASSERT_THAT(index.allContaining("b"), IsEmpty());
  index.add("abc");
  EXPECT_THAT(index.allContaining("abc"), ElementsAre(1));
  EXPECT_THAT(index.allContaining("b"), ElementsAre(1));
  index.add("xbx");
  EXPECT_THAT(index.allContaining("b"), ElementsAre(1, 2));
}

namespace {

// The same questions, answered by looking through all texts.
struct PlainSearch {
  std::vector<std::string> texts;
  std::vector<bool> removed;

  static bool contains(const std::string& text, const std::string& part) {
    return !part.empty() && text.find(part) != std::string::npos;
  }

  std::optional<SubstringIndex::Number> firstContaining(const std::string& part) const {
    for (std::size_t number = 0; number < texts.size(); ++number) {
      if (contains(texts[number], part)) return static_cast<SubstringIndex::Number>(number);
    }
    return std::nullopt;
  }

  std::vector<SubstringIndex::Number> allContaining(const std::string& part) const {
    std::vector<SubstringIndex::Number> found;
    for (std::size_t number = 0; number < texts.size(); ++number) {
      if (!removed[number] && contains(texts[number], part)) {
        found.push_back(static_cast<SubstringIndex::Number>(number));
      }
    }
    return found;
  }
};

struct RandomTexts {
  std::mt19937 random;
  unsigned letters;

  std::size_t below(std::size_t limit) { return std::size_t{random()} % limit; }

  std::string text(std::size_t longest) {
    std::string text(below(longest + 1), ' ');
    for (char& letter : text) letter = static_cast<char>('a' + below(letters));
    return text;
  }

  std::string partOf(const std::string& text) {
    if (text.empty()) return text;
    const std::size_t start = below(text.size());
    return text.substr(start, 1 + below(text.size() - start));
  }
};

void compareWithPlainSearch(unsigned seed, unsigned letters, std::size_t longest) {
  RandomTexts random{std::mt19937(seed), letters};
  SubstringIndex index;
  PlainSearch plain;
  for (int step = 0; step < 250; ++step) {
    SCOPED_TRACE(testing::Message() << "seed " << seed << ", " << letters << " letters, step " << step);
    const bool hasText = !plain.texts.empty();
    const std::size_t chosen = hasText ? random.below(plain.texts.size()) : 0;
    switch (random.below(4)) {
      case 0: {
        // A text of its own, one that was there before, or a part of one.
        const std::size_t kind = random.below(3);
        std::string text = kind == 0 || !hasText ? random.text(longest) : plain.texts[chosen];
        if (kind == 2) text = random.partOf(text);
        ASSERT_EQ(index.add(text), plain.texts.size());
        plain.texts.push_back(text);
        plain.removed.push_back(false);
        break;
      }
      case 1:
        if (!hasText) break;
        index.remove(static_cast<SubstringIndex::Number>(chosen));
        plain.removed[chosen] = true;
        break;
      default: {
        const std::string part = hasText && random.below(3) > 0 ? random.partOf(plain.texts[chosen]) : random.text(4);
        ASSERT_EQ(index.allContaining(part), plain.allContaining(part)) << "part " << part;
        ASSERT_EQ(index.firstContaining(part), plain.firstContaining(part)) << "part " << part;
      }
    }
  }
}

}  // namespace

TEST(SubstringIndex, EqualsAPlainSearchInTextsOfFewLetters) {
  for (unsigned seed = 1; seed <= 40; ++seed) {
    compareWithPlainSearch(seed, 1, 6);
    compareWithPlainSearch(seed, 2, 12);
    compareWithPlainSearch(seed, 3, 20);
  }
}

TEST(SubstringIndex, EqualsAPlainSearchInTextsOfManyLetters) {
  for (unsigned seed = 1; seed <= 20; ++seed) compareWithPlainSearch(seed, 26, 40);
}

TEST(SubstringIndex, EqualsAPlainSearchForEveryPartWhileTextsComeAndGo) {
  SubstringIndex index;
  PlainSearch plain;
  const auto compareAllParts = [&] {
    std::string part;
    for (unsigned number = 0; number < 3 + 9 + 27 + 81; ++number) {
      part.clear();
      for (unsigned rest = number; part.empty() || rest > 0; rest /= 3) part += static_cast<char>('a' + rest % 3);
      ASSERT_EQ(index.allContaining(part), plain.allContaining(part)) << "part " << part;
      ASSERT_EQ(index.firstContaining(part), plain.firstContaining(part)) << "part " << part;
    }
  };
  for (const char* text : {"abcab", "bcabc", "aab", "abcabcabc", "cab", "aaaa", "b", "", "acacac", "abcab"}) {
    index.add(text);
    plain.texts.emplace_back(text);
    plain.removed.push_back(false);
    compareAllParts();
  }
  for (const SubstringIndex::Number number : {3U, 0U, 9U, 6U, 1U, 2U, 4U, 5U, 7U, 8U}) {
    index.remove(number);
    plain.removed[number] = true;
    compareAllParts();
  }
  for (const char* text : {"cab", "abcabcabcabc", "aaa"}) {
    index.add(text);
    plain.texts.emplace_back(text);
    plain.removed.push_back(false);
    compareAllParts();
  }
}
