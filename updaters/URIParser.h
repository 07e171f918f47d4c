// SPDX-License-Identifier: MIT
#pragma once

#include <uriparser/Uri.h>

/// The functions of uriparser (RFC 3986) that the tool calls. Its library is opened at the first URL that is no plain
/// path: most runs have none, and starting with it would cost each of them a thirtieth of its time.
struct URIParser {
  decltype(&uriParseSingleUriExA) parseSingleUriEx;
  decltype(&uriFreeUriMembersA) freeUriMembers;
  decltype(&uriUnescapeInPlaceExA) unescapeInPlaceEx;

  /// Throws ATException when the library cannot be opened.
  static const URIParser& shared();
};
