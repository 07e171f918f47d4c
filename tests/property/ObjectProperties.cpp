// SPDX-License-Identifier: MIT
//
// Any sequence of look-ups, edits, repeats and removals gives in a document what it gives in plain lists that are
// walked through. Each object has a twin in the plain list, of the same class: an object that a look-up asks too early
// or too late keeps a part that its twin does not have, and is told from it later. Found here in its time: specs that
// were not forgotten with names, matches out of list order, a choice without lines that got a code.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/ATLog.h"
#include "base/Text.h"
#include "ppd/document/ATPPD.h"

namespace {

using Spec = std::optional<std::string_view>;
using Indexes = std::vector<std::size_t>;

const std::array<std::string, 6> kLines = {"*A S: 1\n", "*A: 2\n",          "junk: 3\n",
                                           "*B S: 4\n", "*A ST/x: \"5\"\n", "*de.A S: 6\n"};
const std::array<std::string, 4> kNames = {"A", "A", "B", "none"};
const std::array<Spec, 4> kSpecs = {std::nullopt, "S", "S", "ST"};
const std::array<std::string, 4> kParts = {"S", "T", "ST", ""};

struct Step {
  unsigned kind, one, other;
};

template <class Array>
const auto& pick(const Array& from, unsigned number) {
  return from[number % from.size()];
}

std::vector<Step> anySteps() {
  const auto number = rc::gen::inRange<unsigned>(0, 1000);
  return *rc::gen::scale(3.0, rc::gen::container<std::vector<Step>>(rc::gen::apply(
                                  [](unsigned kind, unsigned one, unsigned other) {
                                    return Step{kind, one, other};
                                  },
                                  number, number, number)));
}

// The document, and a plain list of twins.
class Twins {
 public:
  Twins() {
    add("*cupsLanguages: \"de fr\"\n");
    ppd_.supportedLocalizations();
    objects_[0].second->name();
    objects_[0].second->value();
  }

  void take(const Step& step) {
    switch (step.kind % 12) {
      case 0:
      case 1:
        return add(pick(kLines, step.one));
      case 2:
        return addObjects(std::make_shared<ATPPDAttribute>(), std::make_shared<ATPPDAttribute>());
      case 3:
        return both(step,
                    [&](ATPPDAttribute& each) { each.addString(pick(kLines, step.other), PPDLineTypeStatement); });
      case 4:
        return both(step,
                    [&](ATPPDAttribute& each) { each.setAttributeString(StatementString(pick(kLines, step.other))); });
      case 5:
        return both(step, [&](ATPPDAttribute& each) { each.setText("new"); });
      case 6:
        return both(step, [&](ATPPDAttribute& each) { each.setValue(each.value()); });
      case 7:
        return remove(step);
      case 8:
        return again(step);
      default:
        return lookUp(step);
    }
  }

  void expectTwins() const {
    for (const auto& [one, other] : objects_) {
      RC_ASSERT(one->strings() == other->strings());
      RC_ASSERT(one->name() == other->name());
      RC_ASSERT(one->spec() == other->spec());
    }
  }

 private:
  using Object = ATPPD::AttributePtr;

  void add(const std::string& line) {
    addObjects(ATPPDAttribute::attributeWithString(line), ATPPDAttribute::attributeWithString(line));
  }
  void addObjects(const Object& one, const Object& other) {
    objects_.emplace_back(one, other);
    ppd_.addPPDAttribute(one);
    plain_.push_back(other);
    askAsTheLogDoes(*other);
  }
  // A message that an attribute is added asks it for what it says.
  static void askAsTheLogDoes(const ATPPDAttribute& attribute) {
    if constexpr (!ATDiagnosticLog) return;
    attribute.name();
    attribute.value();
  }
  // One of a few: what matters takes several edits of the same.
  const std::pair<Object, Object>& pickObject(unsigned number) const {
    return objects_[number % std::min<std::size_t>(objects_.size(), 8)];
  }
  template <class Edit>
  void both(const Step& step, const Edit& edit) {
    const auto& [one, other] = pickObject(step.one);
    edit(*one);
    edit(*other);
  }
  void remove(const Step& step) {
    const auto& [one, other] = pickObject(step.one);
    ppd_.removePPDAttribute(one);
    if constexpr (ATDiagnosticLog) other->name();
    const auto found = std::find(plain_.begin(), plain_.end(), other);
    if (found != plain_.end()) plain_.erase(found);
  }
  void again(const Step& step) {
    const auto& [one, other] = pickObject(step.one);
    ppd_.addPPDAttribute(one);
    plain_.push_back(other);
    askAsTheLogDoes(*other);
  }

  void lookUp(const Step& step) const {
    const std::string& name = pick(kNames, step.one);
    const Spec& spec = pick(kSpecs, step.other);
    const std::string& part = pick(kParts, step.other);
    switch (step.kind / 12 % 4) {
      case 0: {
        const auto found = ppd_.attributeForName(name, spec);
        RC_ASSERT((found ? Indexes{indexOf(found)} : Indexes()) == walk(spec, {name}, true));
        return;
      }
      case 1:
        RC_ASSERT(indexesOf(ppd_.attributesForName(name)) == walk(std::nullopt, {name}, false));
        return;
      case 2:
        RC_ASSERT(indexesOf(ppd_.attributesForName(name, part)) == walkContaining(name, part));
        return;
      default:
        RC_ASSERT(indexesOf(ppd_.localizationForAttributeWithName(name, spec)) ==
                  walk(spec, {"de." + name, "fr." + name}, false));
    }
  }

  Indexes walk(const Spec& spec, const std::vector<std::string>& names, bool onlyFirst) const {
    Indexes found;
    for (const Object& each : plain_) {
      const auto given = each->name();
      const bool isNamed = given && std::find(names.begin(), names.end(), *given) != names.end();
      if (!isNamed || (spec && each->spec() != spec)) continue;
      found.push_back(indexOf(each));
      if (onlyFirst) break;
    }
    return found;
  }
  Indexes walkContaining(const std::string& name, const std::string& part) const {
    Indexes found;
    for (const Object& each : plain_) {
      if (each->name() != name) continue;
      const auto spec = each->spec();
      if (spec && Text::contains(*spec, part)) found.push_back(indexOf(each));
    }
    return found;
  }

  std::size_t indexOf(const Object& object) const {
    const auto found = std::find_if(objects_.begin(), objects_.end(),
                                    [&](const auto& twins) { return twins.first == object || twins.second == object; });
    return static_cast<std::size_t>(found - objects_.begin());
  }
  Indexes indexesOf(const ATPPD::Attributes& found) const {
    Indexes indexes;
    for (const Object& each : found) indexes.push_back(indexOf(each));
    return indexes;
  }

  ATPPD ppd_;
  std::vector<Object> plain_;
  std::vector<std::pair<Object, Object>> objects_;
};

const std::array<std::string, 4> kChoiceLines = {"*O A/a: \"12\"\n", "*O B/b: \"123\"\n", "*O C/c: 1\n",
                                                 "*O A/d: \"2312\"\n"};

// An option's choices, and a plain list of them: a choice keeps nothing that an edit could change.
class Choices {
 public:
  Choices() : option_(ATPPDOption::optionWithString("*OpenUI *O: PickOne\n")) {
    option_->addString("*CloseUI: *O\n", PPDLineTypeCloseUI);
  }

  void take(const Step& step) {
    const std::string& line = pick(kChoiceLines, step.other);
    switch (step.kind % 6) {
      case 0:
        return add(ATPPDChoice::choiceWithString(line));
      case 1:
        return add(std::make_shared<ATPPDChoice>());
      case 2:
        if (!plain_.empty()) pick(plain_, step.one)->addString(line, PPDLineTypeChoice);
        return;
      case 3:
        return remove(step);
      case 4: {
        const std::string& name = pick(std::array<std::string, 3>{"A", "B", "none"}, step.one);
        RC_ASSERT(option_->choiceForName(name) == first([&](const auto& each) { return each->name() == name; }));
        return;
      }
      default: {
        const std::string& part = pick(std::array<std::string, 5>{"123", "12", "2", "", "none"}, step.one);
        RC_ASSERT(option_->choiceWithCodeContaining(part) ==
                  first([&](const auto& each) { return each->code() && Text::contains(*each->code(), part); }));
      }
    }
  }

 private:
  using Choice = std::shared_ptr<ATPPDChoice>;

  void add(const Choice& choice) {
    option_->addChoice(choice);
    plain_.push_back(choice);
  }
  void remove(const Step& step) {
    if (plain_.empty()) return;
    const auto found = plain_.begin() + static_cast<std::ptrdiff_t>(step.one % plain_.size());
    option_->removeChoice(*found);
    plain_.erase(found);
  }
  template <class IsIt>
  Choice first(const IsIt& isIt) const {
    const auto found = std::find_if(plain_.begin(), plain_.end(), isIt);
    return found == plain_.end() ? nullptr : *found;
  }

  std::shared_ptr<ATPPDOption> option_;
  std::vector<Choice> plain_;
};

RC_GTEST_PROP(Objects, ADocumentIsAsPlainListsAre, ()) {
  for (int document = 0; document < 5; ++document) {
    Twins twins;
    for (const Step& step : anySteps()) twins.take(step);
    twins.expectTwins();
  }
}

RC_GTEST_PROP(Objects, ChoicesAreAsInAPlainList, ()) {
  Choices choices;
  for (const Step& step : anySteps()) choices.take(step);
}

}  // namespace
