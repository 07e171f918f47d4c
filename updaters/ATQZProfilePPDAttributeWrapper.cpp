// SPDX-License-Identifier: MIT
#include "updaters/ATQZProfilePPDAttributeWrapper.h"

#include <fmt/ranges.h>

#include <utility>

#include "base/ATLog.h"
#include "base/Format.h"
#include "base/Text.h"
#include "ppd/lines/PPDExtentions.h"
#include "updaters/PPDKeywords.h"

std::shared_ptr<ATQZProfilePPDAttributeWrapper>
ATQZProfilePPDAttributeWrapper::qzProfilePPDAttributeDecoratorWithPPDAttribute(const ATPPDAttribute& attribute) {
  return initWithPPDAttribute(attribute);
}

std::shared_ptr<ATQZProfilePPDAttributeWrapper> ATQZProfilePPDAttributeWrapper::initWithPPDAttribute(
    const ATPPDAttribute& attribute) {
  auto wrapper = std::make_shared<ATQZProfilePPDAttributeWrapper>();
  const bool initialized =
      wrapper->initializeWithName(attribute.name(), attribute.spec(), attribute.text(), attribute.value());
  return initialized && attribute.name() == PPDKeyword::factoryProfile ? wrapper : nullptr;
}

const std::optional<std::string>& ATQZProfilePPDAttributeWrapper::factoryPath() const {
  if (!factoryPath_) calculateQZProperties();
  return factoryPath_;
}

const std::optional<std::string>& ATQZProfilePPDAttributeWrapper::factoryProfileName() const {
  if (!factoryProfileName_) calculateQZProperties();
  return factoryProfileName_;
}

void ATQZProfilePPDAttributeWrapper::calculateQZProperties() const {
  const std::vector<std::string> components = factoryProfileComponents();
  if (components.size() != 2) return;
  factoryProfileName_ = components[0];
  factoryPath_ = components[1];
}

void ATQZProfilePPDAttributeWrapper::resetQZProperties() {
  factoryProfileName_.reset();
  factoryPath_.reset();
}

std::vector<std::string> ATQZProfilePPDAttributeWrapper::factoryProfileComponents() const {
  static constexpr const char* kSignature = "-[ATQZProfilePPDAttributeWrapper factoryProfileComponents]";
  const auto content = value() ? PPDExtentions::quotedValueContent(*value()) : std::nullopt;
  if (!content) {
    ATLog(kSignature, "Input {}, parsed {}", value(), Text::orNull(std::nullopt));
    return {};
  }
  const auto parts = Text::split(*content, ";;");
  ATLog(kSignature, "Input {}, parsed ({})", value(), fmt::join(parts, ", "));
  return {parts.begin(), parts.end()};
}

// Reset last: the new part may be one of the properties.
void ATQZProfilePPDAttributeWrapper::setText(const Part& text) {
  ATPPDAttribute::setText(text);
  resetQZProperties();
}

void ATQZProfilePPDAttributeWrapper::setValue(const Part& value) {
  ATPPDAttribute::setValue(value);
  resetQZProperties();
}

std::shared_ptr<ATQZProfilePPDAttributeWrapper> ATQZProfilePPDAttributeWrapper::attributeWithString(
    const StatementString& string) {
  auto wrapper = std::make_shared<ATQZProfilePPDAttributeWrapper>();
  wrapper->addString(string, PPDLineTypeStatement);
  return wrapper;
}
