// SPDX-License-Identifier: MIT
#include "ppd/document/StatementIndex.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <iterator>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <tuple>

#include "tests/ppd/TestSupport.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr std::nullopt_t null = std::nullopt;

using AttributePtr = std::shared_ptr<ATPPDAttribute>;
using Position = StatementIndex::Position;
using Positions = StatementIndex::Positions;
using Spec = StatementIndex::Spec;

// Positions are counted from 1 in the order of adding.
struct StatementIndexTest : testing::Test {
  StatementIndex::List list;
  StatementIndex index;

  AttributePtr add(const std::string& line) {
    auto added = ATPPDAttribute::attributeWithString(line);
    list.append(added);
    return added;
  }
  AttributePtr addWithoutLines() {
    auto added = std::make_shared<ATPPDAttribute>();
    list.append(added);
    return added;
  }
  void remove(const AttributePtr& statement) { list.removeAt(*list.positionOf(statement.get())); }

  std::optional<Position> first(std::string_view name, const Spec& spec = null) {
    return index.first(list, name, spec);
  }
  Positions all(std::string_view name, const Spec& spec = null) { return index.all(list, name, spec); }
  Positions containing(std::string_view name, std::string_view part) {
    return index.allWithSpecContaining(list, name, part);
  }
};

}  // namespace

TEST_F(StatementIndexTest, FindsNothingInAnEmptyList) {
  EXPECT_EQ(first("A"), null);
  EXPECT_EQ(first("A", "S"), null);
  EXPECT_THAT(all("A"), IsEmpty());
  EXPECT_THAT(all("A", "S"), IsEmpty());
  EXPECT_THAT(containing("A", "S"), IsEmpty());
}

TEST_F(StatementIndexTest, FindsByName) {
  add("*A S: 1\n");
  add("*B: 2\n");
  add("*A: 3\n");
  add("*a S: 4\n");
  for (int time = 0; time < 5; ++time) {
    EXPECT_EQ(first("A"), 1U);
    EXPECT_EQ(first("B"), 2U);
    EXPECT_EQ(first("C"), null);
    EXPECT_THAT(all("A"), ElementsAre(1, 3));
    EXPECT_THAT(all("a"), ElementsAre(4));
    EXPECT_THAT(all(""), IsEmpty());
  }
}

TEST_F(StatementIndexTest, FindsByNameAndSpec) {
  add("*A: 1\n");
  add("*A S: 2\n");
  add("*A T: 3\n");
  add("*B T: 4\n");
  add("*A S: 5\n");
  for (int time = 0; time < 5; ++time) {
    EXPECT_EQ(first("A", "S"), 2U);
    EXPECT_EQ(first("A", "T"), 3U);
    EXPECT_EQ(first("B", "T"), 4U);
    EXPECT_EQ(first("B", "S"), null);
    EXPECT_EQ(first("A", "s"), null);
    EXPECT_EQ(first("A", ""), null);
    EXPECT_THAT(all("A", "S"), ElementsAre(2, 5));
    EXPECT_THAT(all("A", "s"), IsEmpty());
    EXPECT_THAT(all("A", ""), IsEmpty());
    EXPECT_THAT(all("C", "S"), IsEmpty());
  }
}

TEST_F(StatementIndexTest, TheEmptySpecIsASpec) {
  add("*A: 1\n");
  list.append(ATPPDAttribute::initWithName("A", "", null, "x"));
  EXPECT_EQ(first("A", ""), 2U);
  EXPECT_THAT(all("A", ""), ElementsAre(2));
  EXPECT_THAT(containing("A", ""), IsEmpty());
}

TEST_F(StatementIndexTest, FindsSpecsThatContainAPart) {
  add("*P RGB.Plain.300: 1\n");
  add("*Q RGB.Plain.300: 2\n");
  add("*P: Plain\n");
  add("*P RGB.Glossy.300/Plain: 4\n");
  add("*P CMYK.PlainPlus.600: 5\n");
  for (int time = 0; time < 5; ++time) {
    EXPECT_THAT(containing("P", "Plain"), ElementsAre(1, 5));
    EXPECT_THAT(containing("P", ".Plain."), ElementsAre(1));
    EXPECT_THAT(containing("P", "0"), ElementsAre(1, 4, 5));
    EXPECT_THAT(containing("P", "CMYK.PlainPlus.600"), ElementsAre(5));
    EXPECT_THAT(containing("P", "CMYK.PlainPlus.600."), IsEmpty());
    EXPECT_THAT(containing("P", "plain"), IsEmpty());
    EXPECT_THAT(containing("P", ""), IsEmpty());
    EXPECT_THAT(containing("R", "Plain"), IsEmpty());
  }
}

TEST_F(StatementIndexTest, AllBytesOfThePartMustStandTogether) {
  add("*P abcXbcd: 1\n");  // every three bytes of "abcd" and not all four
  add("*P abcd: 2\n");
  EXPECT_THAT(containing("P", "abcd"), ElementsAre(2));
}

TEST_F(StatementIndexTest, FindsWhatWasAddedAfterALookUp) {
  add("*A S: 1\n");
  EXPECT_THAT(all("A"), ElementsAre(1));
  EXPECT_THAT(all("A", "S"), ElementsAre(1));
  EXPECT_THAT(containing("A", "S"), ElementsAre(1));
  EXPECT_EQ(first("B"), null);
  EXPECT_EQ(first("A", "T"), null);
  add("*B: 2\n");
  add("*A T: 3\n");
  add("*A S: 4\n");
  EXPECT_EQ(first("B"), 2U);
  EXPECT_EQ(first("A", "T"), 3U);
  EXPECT_THAT(all("A"), ElementsAre(1, 3, 4));
  EXPECT_THAT(all("A", "S"), ElementsAre(1, 4));
  EXPECT_THAT(containing("A", "S"), ElementsAre(1, 4));
}

TEST_F(StatementIndexTest, DoesNotFindWhatWasRemoved) {
  for (const bool asked : {false, true}) {
    list = {};
    index = {};
    const AttributePtr one = add("*A S: 1\n");
    const AttributePtr two = add("*A S: 2\n");
    if (asked) {
      ASSERT_EQ(first("A"), 1U);
      ASSERT_THAT(all("A", "S"), ElementsAre(1, 2));
      ASSERT_THAT(containing("A", "S"), ElementsAre(1, 2));
    }
    remove(one);
    EXPECT_EQ(first("A"), 2U);
    EXPECT_EQ(first("A", "S"), 2U);
    EXPECT_THAT(all("A"), ElementsAre(2));
    EXPECT_THAT(all("A", "S"), ElementsAre(2));
    EXPECT_THAT(containing("A", "S"), ElementsAre(2));
    remove(two);
    EXPECT_EQ(first("A"), null);
    EXPECT_EQ(first("A", "S"), null);
    EXPECT_THAT(all("A"), IsEmpty());
    EXPECT_THAT(all("A", "S"), IsEmpty());
    EXPECT_THAT(containing("A", "S"), IsEmpty());
    list.append(one);
    EXPECT_EQ(first("A", "S"), 3U);
    EXPECT_THAT(containing("A", "S"), ElementsAre(3));
  }
}

// A part that was asked for stays as it was found; one that nobody asked for comes from the line of later.
namespace {

std::string nameAfterwards(const AttributePtr& statement) {
  statement->setAttributeString(StatementString("*Later Part: x\n"));
  return std::string(statement->name().value_or("(null)"));
}

// The name is asked for, so it has to be the same.
std::string specAfterwards(const AttributePtr& statement, const std::string& name) {
  statement->setAttributeString(StatementString("*" + name + " Part: x\n"));
  return std::string(statement->spec().value_or("(null)"));
}

}  // namespace

TEST_F(StatementIndexTest, ALookUpByNameAsksForNamesUpToTheFirstMatch) {
  const AttributePtr before = add("*A S: 1\n");
  const AttributePtr match = add("*B S: 2\n");
  const AttributePtr behind = add("*B S: 3\n");
  ASSERT_EQ(first("B"), 2U);
  ASSERT_EQ(first("A"), 1U);
  EXPECT_EQ(specAfterwards(match, "B"), "Part");
  EXPECT_EQ(nameAfterwards(before), "A");
  EXPECT_EQ(nameAfterwards(match), "B");
  EXPECT_EQ(nameAfterwards(behind), "Later");
}

TEST_F(StatementIndexTest, ALookUpBySpecAsksForSpecsOfTheNameUpToTheFirstMatch) {
  const AttributePtr otherName = add("*A S: 1\n");
  const AttributePtr before = add("*B S: 2\n");
  const AttributePtr match = add("*B T: 3\n");
  const AttributePtr behind = add("*B T: 4\n");
  ASSERT_EQ(first("B", "T"), 3U);
  ASSERT_EQ(first("B", "S"), 2U);
  EXPECT_EQ(specAfterwards(otherName, "A"), "Part");
  EXPECT_EQ(nameAfterwards(otherName), "A");
  EXPECT_EQ(specAfterwards(before, "B"), "S");
  EXPECT_EQ(specAfterwards(match, "B"), "T");
  EXPECT_EQ(nameAfterwards(behind), "Later");
}

TEST_F(StatementIndexTest, ALookUpBySpecAsksForNoSpecBehindTheMatchThoughAllNamesAreKnown) {
  add("*B S: 1\n");
  const AttributePtr behind = add("*B S: 2\n");
  ASSERT_THAT(all("B"), ElementsAre(1, 2));
  ASSERT_EQ(first("B", "S"), 1U);
  EXPECT_EQ(specAfterwards(behind, "B"), "Part");
  EXPECT_EQ(first("B", "Part"), 2U);
}

// What had no name, or no spec, and gets it later.

namespace {

enum class Way { addString, setAttributeString };

class StatementIndexLaterTest : public StatementIndexTest, public testing::WithParamInterface<std::tuple<Way, int>> {
 protected:
  static Way way() { return std::get<0>(GetParam()); }
  static int lookUps() { return std::get<1>(GetParam()); }

  // A statement that has no name until it gets the line.
  AttributePtr addNameless() { return way() == Way::addString ? addWithoutLines() : add("text\n"); }

  static void give(const AttributePtr& statement, const std::string& line) {
    if (way() == Way::addString) {
      statement->addString(line, PPDLineTypeStatement);
    } else {
      statement->setAttributeString(StatementString(line));
    }
  }

  // Asks everything.
  void ask() {
    for (int time = 0; time < lookUps(); ++time) {
      static_cast<void>(first("none"));
      static_cast<void>(first("A", "none"));
      static_cast<void>(all("A"));
      static_cast<void>(all("A", "S"));
      static_cast<void>(containing("A", "S"));
    }
  }
};

}  // namespace

TEST_P(StatementIndexLaterTest, AStatementIsFoundByTheNameThatItHasNow) {
  const AttributePtr nameless = addNameless();
  add("*A S: 2\n");
  ask();
  ASSERT_EQ(first("A"), 2U);
  ASSERT_EQ(first("A", "S"), 2U);
  give(nameless, "*A S: x\n");
  EXPECT_EQ(first("A", "S"), 1U);
  EXPECT_EQ(first("A"), 1U);
  EXPECT_THAT(all("A"), ElementsAre(1, 2));
  EXPECT_THAT(all("A", "S"), ElementsAre(1, 2));
  EXPECT_THAT(containing("A", "S"), ElementsAre(1, 2));
}

TEST_P(StatementIndexLaterTest, EveryLookUpMayBeTheFirstAfterTheNameCame) {
  using LookUp = void (*)(StatementIndexLaterTest&);
  const LookUp lookUpsAfterwards[] = {
      [](StatementIndexLaterTest& test) { static_cast<void>(test.first("A")); },
      [](StatementIndexLaterTest& test) { static_cast<void>(test.first("B")); },
      [](StatementIndexLaterTest& test) { static_cast<void>(test.all("A")); },
      [](StatementIndexLaterTest& test) { static_cast<void>(test.all("B")); },
      [](StatementIndexLaterTest& test) { static_cast<void>(test.first("A", "T")); },
      [](StatementIndexLaterTest& test) { static_cast<void>(test.first("B", "S")); },
      [](StatementIndexLaterTest& test) { static_cast<void>(test.all("A", "T")); },
      [](StatementIndexLaterTest& test) { static_cast<void>(test.containing("A", "T")); },
  };
  for (std::size_t number = 0; number < std::size(lookUpsAfterwards); ++number) {
    SCOPED_TRACE(number);
    list = {};
    index = {};
    const AttributePtr nameless = addNameless();
    add("*A S: 2\n");
    ask();
    give(nameless, "*A T: x\n");
    lookUpsAfterwards[number](*this);
    EXPECT_EQ(first("A", "T"), 1U);
    EXPECT_EQ(first("A", "S"), 2U);
    EXPECT_THAT(all("A", "S"), ElementsAre(2));
    EXPECT_THAT(containing("A", "S"), ElementsAre(2));
    EXPECT_THAT(containing("A", "T"), ElementsAre(1));
    EXPECT_EQ(first("A"), 1U);
    EXPECT_THAT(all("A"), ElementsAre(1, 2));
  }
}

TEST_P(StatementIndexLaterTest, ANamelessStatementThatWasRemovedIsNotFound) {
  const AttributePtr nameless = addNameless();
  add("*A S: 2\n");
  ask();
  remove(nameless);
  give(nameless, "*A S: x\n");
  EXPECT_EQ(first("A"), 2U);
  EXPECT_EQ(first("A", "S"), 2U);
  EXPECT_THAT(all("A"), ElementsAre(2));
}

INSTANTIATE_TEST_SUITE_P(Ways, StatementIndexLaterTest,
                         testing::Combine(testing::Values(Way::addString, Way::setAttributeString),
                                          testing::Values(0, 1, 5)));

TEST_F(StatementIndexTest, AStatementIsFoundByTheSpecThatItHasNow) {
  for (const int lookUps : {0, 1, 5}) {
    list = {};
    index = {};
    const AttributePtr without = add("*A: x\n");
    add("*A S: 2\n");
    for (int time = 0; time < lookUps; ++time) {
      ASSERT_EQ(first("A", "S"), 2U);
      ASSERT_EQ(first("A", "T"), null);
      ASSERT_THAT(all("A", "S"), ElementsAre(2));
      ASSERT_THAT(containing("A", "S"), ElementsAre(2));
    }
    without->setAttributeString(StatementString("*A S: x\n"));
    EXPECT_EQ(first("A", "S"), 1U);
    EXPECT_THAT(all("A", "S"), ElementsAre(1, 2));
    EXPECT_THAT(containing("A", "S"), ElementsAre(1, 2));
    EXPECT_THAT(all("A"), ElementsAre(1, 2));
  }
}

// The same questions, answered by asking every statement. Of a part that was absent only the first one counts.
namespace {

class RandomStatements {
 public:
  explicit RandomStatements(unsigned seed) : random_(seed) {}

  void change() {
    const AttributePtr any = anyStatement();
    switch (below(7)) {
      case 0:
      case 1:
        list_.append(ATPPDAttribute::attributeWithString(lineOf(anyName(), anySpec())));
        break;
      case 2:
        list_.append(below(2) == 0 ? std::make_shared<ATPPDAttribute>()
                                   : ATPPDAttribute::attributeWithString("text\n"));
        break;
      case 3:
        if (any != nullptr) list_.append(any);
        break;
      case 4:
        if (any != nullptr) list_.removeAt(*list_.positionOf(any.get()));
        break;
      case 5:
        if (any != nullptr && any->container().empty()) {
          any->addString(lineOf(anyName(), anySpec()), PPDLineTypeStatement);
        }
        break;
      default:
        if (any != nullptr && (!any->name() || !any->spec())) {
          const std::string name = any->name() ? std::string(*any->name()) : anyName();
          any->setAttributeString(StatementString(lineOf(name, anySpec())));
        }
    }
  }

  void compareOneLookUp() {
    const std::string name = anyName();
    const std::string spec = anySpec();
    switch (below(5)) {
      case 0:
        ASSERT_EQ(index_.first(list_, name, null), firstOf(walk(name, null))) << name;
        break;
      case 1:
        ASSERT_EQ(index_.first(list_, name, spec), firstOf(walk(name, spec))) << name << " " << spec;
        break;
      case 2:
        ASSERT_EQ(index_.all(list_, name, null), walk(name, null)) << name;
        break;
      case 3:
        ASSERT_EQ(index_.all(list_, name, spec), walk(name, spec)) << name << " " << spec;
        break;
      default: {
        const std::string part = spec.substr(below(spec.size() + 1));
        ASSERT_EQ(index_.allWithSpecContaining(list_, name, part), walkContaining(name, part)) << name << " " << part;
      }
    }
  }

 private:
  std::size_t below(std::size_t limit) { return std::size_t{random_()} % limit; }

  std::string anyName() { return std::string(1, static_cast<char>('a' + below(4))); }

  std::string anySpec() {
    static constexpr const char* kSpecs[] = {"", "S", "S.T", "RGB.S.T", "RGB.S.S", "CMYK.RGB.S"};
    return kSpecs[below(std::size(kSpecs))];
  }

  static std::string lineOf(const std::string& name, const std::string& spec) {
    return "*" + name + " " + spec + ": x\n";
  }

  AttributePtr anyStatement() { return list_.empty() ? nullptr : list_.at(list_.positionOfIndex(below(list_.size()))); }

  template <class Fits>
  Positions walkFor(const std::string& name, Fits fits) const {
    Positions found;
    for (Position position = 1; position < list_.positionsEnd(); ++position) {
      const auto& statement = list_.at(position);
      if (statement != nullptr && statement->name() == name && fits(*statement)) found.push_back(position);
    }
    return found;
  }

  Positions walk(const std::string& name, const Spec& spec) const {
    return walkFor(name, [&](const ATPPDAttribute& statement) { return !spec || statement.spec() == spec; });
  }

  Positions walkContaining(const std::string& name, const std::string& part) const {
    return walkFor(name, [&](const ATPPDAttribute& statement) {
      return !part.empty() && statement.spec().value_or("").find(part) != std::string_view::npos;
    });
  }

  static std::optional<Position> firstOf(const Positions& positions) {
    return positions.empty() ? std::nullopt : std::optional(positions.front());
  }

  std::mt19937 random_;
  StatementIndex::List list_;
  StatementIndex index_;
};

}  // namespace

TEST_F(StatementIndexTest, WhatIsInFrontOfAMatchIsNotAskedForWhatIsBehindIt) {
  add("*X: 1\n");
  const AttributePtr b = add("junk: 1\n");
  EXPECT_THAT(all("none"), IsEmpty());
  b->setAttributeString("*Bar: 2\n");
  EXPECT_EQ(first("X"), 1U);
  b->setAttributeString("*Q: 3\n");
  EXPECT_EQ(first("Q"), 2U);
  EXPECT_EQ(first("Bar"), null);
}

TEST_F(StatementIndexTest, AMatchAmongStatementsWithoutANameOrASpecIsTheFirstInListOrder) {
  const AttributePtr nameless = add("junk: 1\n");
  const AttributePtr specless = add("*A: 2\n");
  const AttributePtr otherNameless = add("junk: 3\n");
  EXPECT_EQ(first("A", "S"), null);
  EXPECT_EQ(first("A", "S"), null);
  otherNameless->setAttributeString("*A S: 3\n");
  EXPECT_EQ(first("A", "S"), 3U);
  specless->setAttributeString("*A S: 2\n");
  EXPECT_EQ(first("A", "S"), 2U);
  EXPECT_EQ(first("A", "S"), 2U);
  nameless->setAttributeString("*A S: 1\n");
  EXPECT_EQ(first("A", "S"), 1U);
  EXPECT_THAT(all("A", "S"), ElementsAre(1, 2, 3));
}

TEST(StatementIndex, EqualsAWalkUnderRandomEdits) {
  for (unsigned seed = 1; seed <= 200; ++seed) {
    RandomStatements statements(seed);
    for (int step = 0; step < 120; ++step) {
      SCOPED_TRACE(testing::Message() << "seed " << seed << ", step " << step);
      statements.change();
      ASSERT_NO_FATAL_FAILURE(statements.compareOneLookUp());
    }
  }
}
