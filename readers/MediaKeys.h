// SPDX-License-Identifier: MIT
#pragma once

/// The keys of the media list dictionary, of its media records and of their profile entries. What each holds stands at
/// ATCustomMediaTypesReaderImpl.
namespace MediaKey {

inline constexpr const char* listVersion = "MedaListVersion";  // spelled so
inline constexpr const char* list = "MediaList";

inline constexpr const char* name = "MediaName";
inline constexpr const char* ID = "ID";
inline constexpr const char* categoryName = "CategoryName";
inline constexpr const char* categoryID = "CategoryID";
inline constexpr const char* profiles = "ICCProfiles";
inline constexpr const char* parentID = "ParentID";
inline constexpr const char* defaultGloss = "DefaultGlossEnhancer";
inline constexpr const char* choiceName = "PPDName";  // added by the updaters

inline constexpr const char* profileURL = "URL";
inline constexpr const char* profileName = "ICCName";
inline constexpr const char* profileGloss = "GlossEnhancer";
inline constexpr const char* profileOutputMode = "OutputMode";

}  // namespace MediaKey

/// The keys of the represented object of the store's media item, and of the media in it.
namespace StoreKey {

inline constexpr const char* listVersion = "MediumListVersion";
inline constexpr const char* media = "MediaInfo";

inline constexpr const char* name = "Name";
inline constexpr const char* ID = "MediumID";
inline constexpr const char* categoryName = "CategoryName";
inline constexpr const char* categoryID = "CategoryID";
inline constexpr const char* profiles = "ICCProfiles";
inline constexpr const char* parentID = "ParentID";
inline constexpr const char* properties = "PropertiesInfo";
inline constexpr const char* defaultGloss = "DefaultGlossEnhancer";

}  // namespace StoreKey
