// SPDX-License-Identifier: MIT
#include "explain/watch/DocumentChanges.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tuple>

#include "tests/support/DocumentReading.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Kind = Report::ChangeKind;
using Change = std::tuple<Kind, std::string, std::string>;

constexpr const char* kDocument =
    "*A: 1\n*B: 2\n*C x/Text: \"3\"\n"
    "*OpenGroup: G/G\n*OpenUI *O/O: PickOne\n*DefaultO: x\n*O x/X: \"\"\n*O y/Y: \"\"\n*CloseUI: *O\n*CloseGroup: G\n";

template <class Edit>
std::vector<Change> changesOf(Edit edit) {
  const auto reading = DocumentReading::read(kDocument);
  const DocumentChanges before(reading->ppd);
  edit(reading->ppd);
  std::vector<Change> changes;
  for (const Report::Change& change : before.to(DocumentChanges(reading->ppd))) {
    changes.emplace_back(change.kind, change.before, change.after);
  }
  return changes;
}

}  // namespace

TEST(DocumentChanges, AreNoneInAnUnchangedDocument) {
  EXPECT_THAT(changesOf([](ATPPD&) {}), IsEmpty());
  EXPECT_THAT(changesOf([](ATPPD& ppd) { ppd.optionForName("O"); }), IsEmpty());
}

TEST(DocumentChanges, TellAddedRemovedAndChangedStatementsInDocumentOrder) {
  const auto changes = changesOf([](ATPPD& ppd) {
    ppd.addPPDAttribute(ATPPDAttribute::initWithName("D", std::nullopt, std::nullopt, "4"));
    ppd.attributeForName("C")->setValue("\"three\"");
    ppd.removePPDAttribute(ppd.attributeForName("A"));
  });
  EXPECT_THAT(changes, ElementsAre(Change(Kind::removed, "*A: 1\n", ""),
                                   Change(Kind::changed, "*C x/Text: \"3\"\n", "*C x/Text: \"three\"\n"),
                                   Change(Kind::added, "", "*D: 4\n")));
}

TEST(DocumentChanges, ReachIntoOptionsInGroups) {
  const auto changes = changesOf([](ATPPD& ppd) {
    const auto option = ppd.optionForName("O");
    option->removeChoice(option->choiceForName("x"));
    option->addChoice(ATPPDChoice::initWithName("z", "Z", "code", "O", {{"de", "Zett"}}));
  });
  EXPECT_THAT(changes, ElementsAre(Change(Kind::removed, "*O x/X: \"\"\n", ""),
                                   Change(Kind::added, "", "*O z/Z: \"code\"\n*de.O z/Zett: \"\"\n")));
}

TEST(DocumentChanges, TellAStatementThatComesBackElsewhereAsMoved) {
  const auto changes = changesOf([](ATPPD& ppd) {
    ppd.removePPDAttribute(ppd.attributeForName("A"));
    ppd.addPPDAttribute(ATPPDAttribute::initWithName("A", std::nullopt, std::nullopt, "1"));
  });
  EXPECT_THAT(changes, ElementsAre(Change(Kind::moved, "*A: 1\n", "*A: 1\n")));
}

TEST(DocumentChanges, JoinEachRemovedStatementOnce) {
  const auto changes = changesOf([](ATPPD& ppd) {
    ppd.removePPDAttribute(ppd.attributeForName("A"));
    for (int count = 0; count < 2; ++count) {
      ppd.addPPDAttribute(ATPPDAttribute::initWithName("A", std::nullopt, std::nullopt, "1"));
    }
  });
  EXPECT_THAT(changes, ElementsAre(Change(Kind::moved, "*A: 1\n", "*A: 1\n"), Change(Kind::added, "", "*A: 1\n")));
}
