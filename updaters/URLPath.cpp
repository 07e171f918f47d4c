// SPDX-License-Identifier: MIT
#include "updaters/URLPath.h"

#include <algorithm>

#include "base/Text.h"
#include "updaters/URIParser.h"

namespace {

// The path component of a string that is known to be a URI reference (RFC 3986, appendix B).
std::string_view pathComponent(std::string_view reference, std::size_t schemeLength) {
  std::string_view path = reference.substr(schemeLength, reference.find_first_of("?#") - schemeLength);
  if (path.starts_with("//")) path.remove_prefix(std::min(path.find('/', 2), path.size()));
  return path;
}

std::string percentDecoded(std::string_view text) {
  std::string decoded(text);
  const char* end = URIParser::shared().unescapeInPlaceEx(decoded.data(), URI_FALSE, URI_BR_DONT_TOUCH);
  decoded.resize(static_cast<std::size_t>(end - decoded.data()));
  return decoded;
}

}  // namespace

std::optional<std::string> pathOfURL(std::string_view url) {
  if (url.starts_with('/')) return std::string(url);
  UriUriA uri;
  const URIParser& parser = URIParser::shared();
  if (parser.parseSingleUriEx(&uri, url.data(), url.data() + url.size(), nullptr) != URI_SUCCESS) return std::nullopt;
  const std::size_t schemeLength =
      uri.scheme.first == nullptr ? 0 : static_cast<std::size_t>(uri.scheme.afterLast - uri.scheme.first) + 1;
  parser.freeUriMembers(&uri);
  std::string path = percentDecoded(pathComponent(url, schemeLength));
  if (path.empty() || !Text::isValidUTF8(path)) return std::nullopt;
  return path;
}
