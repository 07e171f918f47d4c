// SPDX-License-Identifier: MIT
#include "updaters/ATQZProfilePPDAttributeWrapper.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/TestLog.h"

namespace {

using WrapperPtr = std::shared_ptr<ATQZProfilePPDAttributeWrapper>;

WrapperPtr wrapped(const std::string& line) {
  return ATQZProfilePPDAttributeWrapper::qzProfilePPDAttributeDecoratorWithPPDAttribute(
      *ATPPDAttribute::attributeWithString(line));
}

WrapperPtr wrappedValue(const std::string& value) {
  return wrapped("*QZcupsICCProfile .Plain./Text: " + value + "\n");
}

void expectNeither(const WrapperPtr& wrapper) {
  ASSERT_NE(wrapper, nullptr);
  EXPECT_EQ(wrapper->factoryProfileName(), std::nullopt);
  EXPECT_EQ(wrapper->factoryPath(), std::nullopt);
}

void expectParts(const WrapperPtr& wrapper, const std::string& name, const std::string& path) {
  ASSERT_NE(wrapper, nullptr);
  EXPECT_EQ(wrapper->factoryProfileName(), name);
  EXPECT_EQ(wrapper->factoryPath(), path);
}

constexpr const char* kSignature = "-[ATQZProfilePPDAttributeWrapper factoryProfileComponents]";

}  // namespace

TEST(ATQZProfilePPDAttributeWrapper, IsMadeFromALineToo) {
  const WrapperPtr wrapper =
      ATQZProfilePPDAttributeWrapper::attributeWithString("*QZcupsICCProfile .Plain./Text: \"n;;/p\"\n");
  expectParts(wrapper, "n", "/p");
  EXPECT_EQ(wrapper->spec(), ".Plain.");
}

TEST(ATQZProfilePPDAttributeWrapper, GivesNameAndPathOfAFactoryProfile) {
  expectParts(wrapped("*QZcupsICCProfile .Glossy./Glossy: \"Glossy Paper;;/Library/Profiles/glossy.icc\"\n"),
              "Glossy Paper", "/Library/Profiles/glossy.icc");
}

TEST(ATQZProfilePPDAttributeWrapper, PathAndNameAreFoundInEitherOrderOfRequest) {
  const auto wrapper = wrappedValue("\"n;;/p\"");
  EXPECT_EQ(wrapper->factoryPath(), "/p");
  EXPECT_EQ(wrapper->factoryProfileName(), "n");
}

TEST(ATQZProfilePPDAttributeWrapper, BothWaysOfMakingOneAreTheSame) {
  const auto attribute = ATPPDAttribute::attributeWithString("*QZcupsICCProfile .Plain./T: \"n;;/p\"\n");
  expectParts(ATQZProfilePPDAttributeWrapper::initWithPPDAttribute(*attribute), "n", "/p");
  const auto other = ATPPDAttribute::attributeWithString("*cupsICCProfile .Plain./T: \"n;;/p\"\n");
  EXPECT_EQ(ATQZProfilePPDAttributeWrapper::initWithPPDAttribute(*other), nullptr);
}

TEST(ATQZProfilePPDAttributeWrapper, TakesFourPartsOverFromTheAttribute) {
  const auto wrapper = wrapped("*QZcupsICCProfile   RGB.Plain.Best /Plain Best:   \"n;;/p\"  \r\n");
  ASSERT_NE(wrapper, nullptr);
  EXPECT_EQ(wrapper->name(), "QZcupsICCProfile");
  EXPECT_EQ(wrapper->spec(), "RGB.Plain.Best");
  EXPECT_EQ(wrapper->text(), "Plain Best");
  EXPECT_EQ(wrapper->value(), "\"n;;/p\"");
}

TEST(ATQZProfilePPDAttributeWrapper, SpecAndTextMayBeAbsent) {
  const auto wrapper = wrapped("*QZcupsICCProfile: \"n;;/p\"\n");
  expectParts(wrapper, "n", "/p");
  EXPECT_EQ(wrapper->spec(), std::nullopt);
  EXPECT_EQ(wrapper->text(), std::nullopt);
}

TEST(ATQZProfilePPDAttributeWrapper, WrapsOnlyFactoryProfileStatements) {
  EXPECT_EQ(wrapped("*cupsICCProfile .Plain./T: \"n;;/p\"\n"), nullptr);
  EXPECT_EQ(wrapped("*qzcupsiccprofile .Plain./T: \"n;;/p\"\n"), nullptr);
  EXPECT_EQ(wrapped("*QZcupsICCProfile2 .Plain./T: \"n;;/p\"\n"), nullptr);
  EXPECT_EQ(wrapped("*de.QZcupsICCProfile .Plain./T: \"n;;/p\"\n"), nullptr);
  EXPECT_EQ(wrapped("no statement\n"), nullptr);
  EXPECT_EQ(ATQZProfilePPDAttributeWrapper::qzProfilePPDAttributeDecoratorWithPPDAttribute(ATPPDAttribute()), nullptr);
}

TEST(ATQZProfilePPDAttributeWrapper, ThreePartsOrOneGiveNeither) {
  expectNeither(wrappedValue("\"n;;/p;;more\""));
  expectNeither(wrappedValue("\"n;;/p;;\""));
  expectNeither(wrappedValue("\";;n;;/p\""));
  expectNeither(wrappedValue("\"/p\""));
  expectNeither(wrappedValue("\"n;/p\""));
  expectNeither(wrappedValue("\"n; ;/p\""));
  expectNeither(wrappedValue("\"\""));
  expectNeither(wrappedValue("\";;;;\""));
}

TEST(ATQZProfilePPDAttributeWrapper, AValueWithoutTwoQuotesGivesNeither) {
  expectNeither(wrappedValue("n;;/p"));
  expectNeither(wrappedValue("\"n;;/p"));
  expectNeither(wrappedValue(""));
  expectNeither(wrapped("*QZcupsICCProfile .Plain./Text"));
}

TEST(ATQZProfilePPDAttributeWrapper, KeepsEmptyParts) {
  expectParts(wrappedValue("\";;/p.icc\""), "", "/p.icc");
  expectParts(wrappedValue("\"n;;\""), "n", "");
  expectParts(wrappedValue("\";;\""), "", "");
}

TEST(ATQZProfilePPDAttributeWrapper, KeepsWhatStandsInTheParts) {
  expectParts(wrappedValue("\" n ;; /p \""), " n ", " /p ");
  expectParts(wrappedValue("\"a;b;;/p;q\""), "a;b", "/p;q");
  expectParts(wrappedValue("\"a;;;b\""), "a", ";b");
  expectParts(wrappedValue("\"a\"b;;/p\""), "a\"b", "/p");
  expectParts(wrappedValue("x\"n;;/p\"y"), "n", "/p");
}

TEST(ATQZProfilePPDAttributeWrapper, ReadsAValueOfSeveralLines) {
  const auto attribute = ATPPDAttribute::attributeWithString("*QZcupsICCProfile .Plain./T: \"n;;\n");
  attribute->addString("/p\"\n", PPDLineTypeContinuation);
  attribute->addString("*End\n", PPDLineTypeEnd);
  expectParts(ATQZProfilePPDAttributeWrapper::initWithPPDAttribute(*attribute), "n", "\n/p");
}

TEST(ATQZProfilePPDAttributeWrapper, ComponentsAreThePartsOfTheQuotedContent) {
  using Parts = std::vector<std::string>;
  EXPECT_EQ(wrappedValue("\"a;;b;;c\"")->factoryProfileComponents(), (Parts{"a", "b", "c"}));
  EXPECT_EQ(wrappedValue("\"a\"")->factoryProfileComponents(), Parts{"a"});
  EXPECT_EQ(wrappedValue("\"\"")->factoryProfileComponents(), Parts{""});
  EXPECT_EQ(wrappedValue("a;;b")->factoryProfileComponents(), Parts());
}

TEST(ATQZProfilePPDAttributeWrapper, SettingTheValueGivesTheNewParts) {
  const auto wrapper = wrappedValue("\"n;;/p\"");
  expectParts(wrapper, "n", "/p");
  wrapper->setValue("\"new;;/new.icc\"");
  expectParts(wrapper, "new", "/new.icc");
  EXPECT_EQ(wrapper->value(), "\"new;;/new.icc\"");
}

TEST(ATQZProfilePPDAttributeWrapper, SettingAValueWithoutPartsTakesThemAway) {
  const auto wrapper = wrappedValue("\"n;;/p\"");
  expectParts(wrapper, "n", "/p");
  wrapper->setValue("\"none\"");
  expectNeither(wrapper);
  wrapper->setValue("\"a;;b\"");
  expectParts(wrapper, "a", "b");
}

TEST(ATQZProfilePPDAttributeWrapper, SettingThroughTheBaseClassResetsToo) {
  const auto wrapper = wrappedValue("\"n;;/p\"");
  expectParts(wrapper, "n", "/p");
  ATPPDAttribute& attribute = *wrapper;
  attribute.setValue("\"new;;/new.icc\"");
  expectParts(wrapper, "new", "/new.icc");
}

TEST(ATQZProfilePPDAttributeWrapper, SettingTheTextSetsItAndKeepsTheParts) {
  const auto wrapper = wrappedValue("\"n;;/p\"");
  expectParts(wrapper, "n", "/p");
  wrapper->setText("New");
  EXPECT_EQ(wrapper->text(), "New");
  expectParts(wrapper, "n", "/p");
}

TEST(ATQZProfilePPDAttributeWrapper, SettingTheTextMakesTheNextRequestLookAgain) {
  const auto wrapper = wrappedValue("\"n;;/p\"");
  expectParts(wrapper, "n", "/p");
  const TestLog log;
  wrapper->setText("New");
  EXPECT_EQ(log.messages(kSignature), std::vector<std::string>());
  EXPECT_EQ(wrapper->factoryProfileName(), "n");
  EXPECT_EQ(wrapper->factoryPath(), "/p");
  EXPECT_EQ(log.messages(kSignature).size(), logged({""}).size());
}

TEST(ATQZProfilePPDAttributeWrapper, SettingTheTextLeavesTheOtherFieldsAsTheyAre) {
  const auto wrapper = wrapped("*QZcupsICCProfile   RGB.Plain.Best /Plain Best:   \"n;;/p\"  \r\n");
  wrapper->setText("New");
  EXPECT_EQ(wrapper->name(), "QZcupsICCProfile");
  EXPECT_EQ(wrapper->spec(), "RGB.Plain.Best");
  EXPECT_EQ(wrapper->text(), "New");
  EXPECT_EQ(wrapper->value(), "\"n;;/p\"");
  EXPECT_EQ(wrapper->attributeString()->view(), "*QZcupsICCProfile RGB.Plain.Best/New: \"n;;/p\"\n");
  wrapper->setText("");
  EXPECT_EQ(wrapper->text(), "");
  EXPECT_EQ(wrapper->attributeString()->view(), "*QZcupsICCProfile RGB.Plain.Best: \"n;;/p\"\n");
  expectParts(wrapper, "n", "/p");
}

TEST(ATQZProfilePPDAttributeWrapper, ItsOwnPropertiesMayBeSetOnIt) {
  const auto wrapper =
      wrappedValue("\"a name that is too long to be kept in the object;;/a path that is as long as that\"");
  wrapper->setText(wrapper->factoryProfileName());
  EXPECT_EQ(wrapper->text(), "a name that is too long to be kept in the object");
  wrapper->setValue(wrapper->factoryPath());
  EXPECT_EQ(wrapper->value(), "/a path that is as long as that");
  expectNeither(wrapper);
}

TEST(ATQZProfilePPDAttributeWrapper, ResettingMakesTheNextRequestLookAgain) {
  const auto wrapper = wrappedValue("\"n;;/p\"");
  const TestLog log;
  EXPECT_EQ(wrapper->factoryPath(), "/p");
  wrapper->resetQZProperties();
  EXPECT_EQ(wrapper->factoryPath(), "/p");
  EXPECT_EQ(log.messages(kSignature).size(), logged({"", ""}).size());
}

TEST(ATQZProfilePPDAttributeWrapper, IsACopyAndNoView) {
  const auto attribute = ATPPDAttribute::attributeWithString("*QZcupsICCProfile .Plain./T: \"n;;/p\"\n");
  const auto wrapper = ATQZProfilePPDAttributeWrapper::initWithPPDAttribute(*attribute);
  wrapper->setValue("\"x;;/x\"");
  wrapper->setText("X");
  EXPECT_EQ(attribute->value(), "\"n;;/p\"");
  EXPECT_EQ(attribute->text(), "T");
  EXPECT_EQ(attribute->attributeString(), std::nullopt);
  attribute->setValue("\"y;;/y\"");
  expectParts(wrapper, "x", "/x");
}

TEST(ATQZProfilePPDAttributeWrapper, LogsTheValueAtEachLookUntilThePartsAreFound) {
  const auto wrapper = wrappedValue("\"n;;/p\"");
  const TestLog log;
  expectParts(wrapper, "n", "/p");
  expectParts(wrapper, "n", "/p");
  EXPECT_EQ(log.messages(kSignature), logged({"Input \"n;;/p\", parsed (n, /p)"}));
}

TEST(ATQZProfilePPDAttributeWrapper, LooksAndLogsAgainAtEveryRequestWhileThePartsAreAbsent) {
  const auto wrapper = wrappedValue("\"none\"");
  const TestLog log;
  expectNeither(wrapper);
  expectNeither(wrapper);
  EXPECT_EQ(log.messages(kSignature).size(), logged({"", "", "", ""}).size());
}

TEST(ATQZProfilePPDAttributeWrapper, LogsAnAbsentListOfPartsAsNull) {
  const auto wrapper = wrappedValue("n;;/p");
  const TestLog log;
  wrapper->factoryProfileComponents();
  EXPECT_EQ(log.messages(kSignature), logged({"Input n;;/p, parsed (null)"}));
}
