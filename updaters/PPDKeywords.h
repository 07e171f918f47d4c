// SPDX-License-Identifier: MIT
#pragma once

/// The names in a PPD that several parts of the system read or write.
namespace PPDKeyword {

inline constexpr const char* modelName = "ModelName";
inline constexpr const char* updaters = "QZPPDUpdaters";

// The media, and what a PPD says of each: `*QZValueAttributes MediaType.<choice>: "key=value;key=value"`.
inline constexpr const char* mediaGroup = "QZImagingOptions";
inline constexpr const char* mediaOption = "MediaType";
inline constexpr const char* mediaProperties = "QZValueAttributes";
inline constexpr const char* mediaListVersion = "QZMediaListVersion";
inline constexpr const char* addedMedia = "QZMediaTypeGroup";

// The gloss enhancer option: a PPD has one of the two.
inline constexpr const char* glossEnhancer = "QZGlossEnhancer";
inline constexpr const char* simplifiedGlossEnhancer = "QZGlossEnhancerSimplified";
inline constexpr const char* outputMode = "OutputMode";

// Colour profiles (CUPS, "PPD Extensions"), and what they were at the factory.
inline constexpr const char* profile = "cupsICCProfile";
inline constexpr const char* factoryProfile = "QZcupsICCProfile";
inline constexpr const char* firstQualifier = "cupsICCQualifier1";
inline constexpr const char* thirdQualifier = "cupsICCQualifier3";

}  // namespace PPDKeyword
