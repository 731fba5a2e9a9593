#pragma once

#include "Store.h"

#include <string>
#include <string_view>

namespace strata {

// The text of a model's state, version 1. One record per line, words apart by one space, in this order:
//
//   strata 1
//   model <name>
//   next <part> <body> <face> <composite>        the numbers that come next
//   part <number> <dimensionality> <name>
//   body <number> <part> <name>
//   face <number> <part> <name>
//   use <face> <side> <body> <name>
//   composite <number> <part> <name>
//   members <composite> <region id> ...          of composites that have any
//   zones <region id> <map> <zone> ...           of bodies, faces, face uses that have any under the map
//   end <checksum>                               of all bytes before this line; no line feed behind it
//
// Records of a kind are ascending. A name is "=" and its bytes, those that are not printable ASCII, the blank and "%"
// as "%" and two upper-case hex digits. A far zone side has "-" before its zone. A model has exactly one text.

/// The state of a model.
std::string writeState(const std::string& modelName, const Store& store);

/// Fills an empty store. False, with the store in any state, for everything but a text of writeState.
bool readState(std::string_view text, std::string& modelName, Store& store);

} // namespace strata
