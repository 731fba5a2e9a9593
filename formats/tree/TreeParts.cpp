#include "TreeParts.h"

#include <algorithm>

namespace meridyn::tree {

KelTreeNode* openNode(KelTreeNode* node, std::initializer_list<std::string> path, unsigned64 size)
{
    for (const std::string& name : path)
        node = node != nullptr ? &(*node)[name] : nullptr;
    if (node != nullptr && size > 0)
        node->size = size;
    return node;
}

KelTreeNode* renew(KelTreeNode* node, unsigned64 size)
{
    if (node != nullptr) {
        node->clear();
        node->size = size;
    }
    return node;
}

KelTreeNode* openField(KelTreeNode* parent, const std::string& name, const std::vector<int>& zoneIds,
                       KelPlainDataType type, unsigned64 size)
{
    KelTreeNode* const field = openNode(parent, {name});
    if (field == nullptr)
        return nullptr;
    if (field->type != type || field->size != size)
        renew(field, size)->type = type;
    for (const int zone : zoneIds)
        if (std::find(field->zoneIds.begin(), field->zoneIds.end(), zone) == field->zoneIds.end())
            field->zoneIds.push_back(zone);
    return field;
}

bool keepList(KelTreeNode* node, const KelValues& values)
{
    if (renew(node) == nullptr)
        return false;
    node->type = values.type;
    return node->values.append(copyOf(values));
}

} // namespace meridyn::tree
