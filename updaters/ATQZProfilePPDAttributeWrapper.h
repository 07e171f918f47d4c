// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ppd/document/ATPPDAttribute.h"

/// Reads a factory profile statement, `*QZcupsICCProfile spec/text: "profile name;;path"`, which a PPD ships beside
/// each `*cupsICCProfile` statement to record the profile that it had at the factory. A copy, not a view: it is never
/// part of a document, and what is set on it reaches none.
class ATQZProfilePPDAttributeWrapper : public ATPPDAttribute {
 public:
  /// A new wrapper that holds the line as a Statement.
  static std::shared_ptr<ATQZProfilePPDAttributeWrapper> attributeWithString(const StatementString& string);

  /// A new wrapper with the attribute's parts, or null when the attribute is not named exactly `QZcupsICCProfile`.
  static std::shared_ptr<ATQZProfilePPDAttributeWrapper> qzProfilePPDAttributeDecoratorWithPPDAttribute(
      const ATPPDAttribute& attribute);
  /// What the operation above does.
  static std::shared_ptr<ATQZProfilePPDAttributeWrapper> initWithPPDAttribute(const ATPPDAttribute& attribute);

  /// The two parts of the value; absent, and looked for again at the next request, when it has not exactly two.
  const std::optional<std::string>& factoryPath() const;
  const std::optional<std::string>& factoryProfileName() const;

  /// Works both parts out of the value, if it has exactly two.
  void calculateQZProperties() const;
  /// Forgets both parts.
  void resetQZProperties();
  /// The parts of the value's quoted content between every ";;"; none without quoted content.
  std::vector<std::string> factoryProfileComponents() const;

  void setText(const Part& text) override;
  void setValue(const Part& value) override;

 private:
  mutable std::optional<std::string> factoryProfileName_;
  mutable std::optional<std::string> factoryPath_;
};
