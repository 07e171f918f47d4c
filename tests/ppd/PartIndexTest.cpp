// SPDX-License-Identifier: MIT
#include "ppd/lists/PartIndex.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <string_view>

using namespace std::string_view_literals;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(PartIndex, HasNoCandidatesAtFirst) {
  const PartIndex index;
  EXPECT_THAT(index.candidates("abc"), IsEmpty());
  EXPECT_THAT(index.candidates("a"), IsEmpty());
  EXPECT_THAT(index.candidates(""), IsEmpty());
}

TEST(PartIndex, NarrowsTheSearchByThreeBytes) {
  PartIndex index;
  index.add("RGB.Plain.300dpi", 1);
  index.add("CMYK.Glossy.300dpi", 4);
  index.add("RGB.Glossy.600dpi", 5);
  EXPECT_THAT(index.candidates("Plain"), ElementsAre(1));
  EXPECT_THAT(index.candidates("Glossy"), ElementsAre(4, 5));
  EXPECT_THAT(index.candidates("300"), ElementsAre(1, 4));
  EXPECT_THAT(index.candidates("CMYK.Glossy"), ElementsAre(4));
  EXPECT_THAT(index.candidates("glossy"), IsEmpty());
  EXPECT_THAT(index.candidates("Glossyx"), IsEmpty());
}

TEST(PartIndex, EveryTextIsACandidateForAShortPart) {
  PartIndex index;
  index.add("abc", 2);
  index.add("", 3);
  index.add("x", 7);
  EXPECT_THAT(index.candidates(""), ElementsAre(2, 3, 7));
  EXPECT_THAT(index.candidates("a"), ElementsAre(2, 3, 7));
  EXPECT_THAT(index.candidates("zz"), ElementsAre(2, 3, 7));
}

TEST(PartIndex, ATextOfThreeBytesIsFound) {
  PartIndex index;
  index.add("abc", 1);
  index.add("ab", 2);
  EXPECT_THAT(index.candidates("abc"), ElementsAre(1));
  EXPECT_THAT(index.candidates("abcd"), IsEmpty());
}

TEST(PartIndex, NamesATextOnceHoweverOftenTheBytesStandInIt) {
  PartIndex index;
  index.add("aaaaaa", 1);
  index.add("abcabcabc", 2);
  index.add("abcabcabc", 3);
  EXPECT_THAT(index.candidates("aaa"), ElementsAre(1));
  EXPECT_THAT(index.candidates("abc"), ElementsAre(2, 3));
}

TEST(PartIndex, BytesOfAnyValueCount) {
  PartIndex index;
  index.add("caf\xC3\xA9"sv, 1);
  index.add("a\0b"sv, 2);
  index.add("\xFF\xFF\xFF"sv, 3);
  EXPECT_THAT(index.candidates("f\xC3\xA9"sv), ElementsAre(1));
  EXPECT_THAT(index.candidates("a\0b"sv), ElementsAre(2));
  EXPECT_THAT(index.candidates("\xFF\xFF\xFF"sv), ElementsAre(3));
  EXPECT_THAT(index.candidates("\x7F\xFF\xFF"sv), IsEmpty());
}

// The same questions, answered by looking through all texts.
namespace {

struct PlainSearch {
  std::map<PartIndex::Number, std::string> texts;

  PartIndex::Numbers containing(std::string_view part) const {
    PartIndex::Numbers found;
    for (const auto& [number, text] : texts) {
      if (text.find(part) != std::string::npos) found.push_back(number);
    }
    return found;
  }

  // Those that hold the rarest three bytes of the part; all of them for a short one.
  std::size_t fewest(std::string_view part) const {
    std::size_t fewest = texts.size();
    for (std::size_t start = 0; start + 3 <= part.size(); ++start) {
      fewest = std::min(fewest, containing(part.substr(start, 3)).size());
    }
    return fewest;
  }
};

void compareWithPlainSearch(unsigned seed, std::size_t letters, std::size_t longest) {
  std::mt19937 random(seed);
  const auto below = [&random](std::size_t limit) { return std::size_t{random()} % limit; };
  const auto anyText = [&] {
    std::string text(below(longest + 1), ' ');
    for (char& letter : text) letter = static_cast<char>('a' + below(letters));
    return text;
  };
  PartIndex index;
  PlainSearch plain;
  PartIndex::Number number = 0;
  for (int step = 0; step < 150; ++step) {
    SCOPED_TRACE(testing::Message() << "seed " << seed << ", " << letters << " letters, step " << step);
    if (below(3) == 0) {
      number += 1 + static_cast<PartIndex::Number>(below(3));
      plain.texts[number] = anyText();
      index.add(plain.texts[number], number);
      continue;
    }
    std::string part = anyText();
    if (!plain.texts.empty() && below(3) > 0) {
      const std::string& text =
          std::next(plain.texts.begin(), static_cast<std::ptrdiff_t>(below(plain.texts.size())))->second;
      const std::size_t start = below(text.size() + 1);
      part = text.substr(start, below(7));
    }
    const PartIndex::Numbers& candidates = index.candidates(part);
    const PartIndex::Numbers containing = plain.containing(part);
    ASSERT_TRUE(std::is_sorted(candidates.begin(), candidates.end())) << part;
    ASSERT_EQ(std::adjacent_find(candidates.begin(), candidates.end()), candidates.end()) << part;
    ASSERT_TRUE(std::includes(candidates.begin(), candidates.end(), containing.begin(), containing.end())) << part;
    ASSERT_EQ(candidates.size(), plain.fewest(part)) << part;
    if (part.size() == 3) {
      ASSERT_EQ(candidates, containing) << part;
    }
  }
}

}  // namespace

TEST(PartIndex, LeavesOutNoTextThatContainsThePart) {
  for (unsigned seed = 1; seed <= 30; ++seed) {
    compareWithPlainSearch(seed, 1, 6);
    compareWithPlainSearch(seed, 2, 12);
    compareWithPlainSearch(seed, 3, 20);
    compareWithPlainSearch(seed, 26, 40);
  }
}
