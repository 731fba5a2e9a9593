#include "arbor/TDomain.h"
#include "arbor/TRegion.h"
#include "arbor/TZone.h"

namespace arbor {

TRegion::TRegion(const std::string& name, TObject* parent) : TObject(name, parent)
{}

TRegion::~TRegion() = default;

bool TRegion::isRegion() const
{
    return true;
}

TObject* TRegion::create(const std::string& name, TObject* parent)
{
    return new TRegion(name, parent);
}

TDomain::TDomain(const std::string& name, TObject* parent) : TObject(name, parent)
{}

TDomain::~TDomain() = default;

bool TDomain::isDomain() const
{
    return true;
}

TObject* TDomain::create(const std::string& name, TObject* parent)
{
    return new TDomain(name, parent);
}

TZone::TZone(const std::string& name, TObject* parent) : TObject(name, parent)
{}

TZone::~TZone() = default;

bool TZone::isZone() const
{
    return true;
}

bool TZone::isCellZone() const
{
    return _kind == Cell;
}

bool TZone::isFaceZone() const
{
    return _kind == Face;
}

bool TZone::isNodeZone() const
{
    return _kind == Node;
}

void TZone::setKind(Kind kind)
{
    _kind = kind == Cell || kind == Face || kind == Node ? kind : None;
}

TObject* TZone::create(const std::string& name, TObject* parent)
{
    return new TZone(name, parent);
}

} // namespace arbor
