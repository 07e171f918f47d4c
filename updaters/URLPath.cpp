// SPDX-License-Identifier: MIT
#include "updaters/URLPath.h"

#include <uriparser/Uri.h>

#include <algorithm>
#include <new>

#include "base/Text.h"

namespace {

bool isLetter(char character) {
  const char folded = Text::foldASCII(character);
  return folded >= 'a' && folded <= 'z';
}

bool isSchemeCharacter(char character) {
  const bool isDigit = character >= '0' && character <= '9';
  return isLetter(character) || isDigit || character == '+' || character == '-' || character == '.';
}

// The bytes of the scheme and its colon; 0 without one (RFC 3986, section 3.1).
std::size_t sizeOfScheme(std::string_view url) {
  if (url.empty() || !isLetter(url.front())) return 0;
  const auto end = std::find_if_not(url.begin(), url.end(), isSchemeCharacter);
  return end != url.end() && *end == ':' ? static_cast<std::size_t>(end - url.begin()) + 1 : 0;
}

bool isURI(std::string_view url) {
  UriUriA uri;
  const int result = uriParseSingleUriExA(&uri, url.data(), url.data() + url.size(), nullptr);
  if (result == URI_ERROR_MALLOC) throw std::bad_alloc();
  if (result == URI_SUCCESS) uriFreeUriMembersA(&uri);
  return result == URI_SUCCESS;
}

// What is behind the scheme of a URI, without authority, query and fragment (RFC 3986, appendix B).
std::string_view pathComponent(std::string_view hierarchy) {
  std::string_view path = hierarchy.substr(0, hierarchy.find_first_of("?#"));
  if (path.starts_with("//")) path.remove_prefix(std::min(path.find('/', 2), path.size()));
  return path;
}

std::string percentDecoded(std::string_view text) {
  std::string decoded(text);
  const char* end = uriUnescapeInPlaceExA(decoded.data(), URI_FALSE, URI_BR_DONT_TOUCH);
  decoded.resize(static_cast<std::size_t>(end - decoded.data()));
  return decoded;
}

}  // namespace

std::optional<std::string> pathOfURL(std::string_view url) {
  const std::size_t scheme = sizeOfScheme(url);
  if (scheme > 0 && !isURI(url)) return std::nullopt;
  std::string path = scheme > 0 ? percentDecoded(pathComponent(url.substr(scheme))) : std::string(url);
  if (path.empty() || !Text::isValidUTF8(path)) return std::nullopt;
  return path;
}
