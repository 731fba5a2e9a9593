#include "arbor/TBase.h"

#include "RareText.h"

namespace arbor {

TBase::TBase(const std::string& name, const std::string& className) : _name(name), _className(&className)
{}

TBase::~TBase() = default;

bool TBase::setName(const std::string& name)
{
    _name = name;
    return true;
}

bool TBase::isObject() const
{
    return false;
}

bool TBase::isProperty() const
{
    return false;
}

const std::string& TBase::secondName() const
{
    return RareText::get(_secondName);
}

void TBase::setSecondName(const std::string& text)
{
    RareText::set(_secondName, text);
}

std::string TBase::className(const TBase* entry)
{
    return entry == nullptr ? std::string() : *entry->_className;
}

} // namespace arbor
