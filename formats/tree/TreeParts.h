#pragma once

#include "KelTree.h"

#include <initializer_list>
#include <string>

/// How a writer makes the nodes of a tree. Null goes through as null.
namespace meridyn::tree {

/// A node along a path of names, made as far as it is not there.
KelTreeNode* openNode(KelTreeNode* node, std::initializer_list<std::string> path, unsigned64 size = 0);

/// The node with nothing in it.
KelTreeNode* renew(KelTreeNode* node, unsigned64 size = 0);

/// A field that goes on with what is there for other zones, unless that has another type or size.
KelTreeNode* openField(KelTreeNode* parent, const std::string& name, const std::vector<int>& zoneIds,
                       KelPlainDataType type, unsigned64 size);

/// Makes a node a list of values. False for null and for no values at all.
bool keepList(KelTreeNode* node, const KelValues& values);

} // namespace meridyn::tree
