#pragma once

#include "arbor/TObject.h"

#include <string>

namespace arbor {

/// A node that stands for a domain of the model: its string or string list property "location" names where it
/// lies. Made as "TDomain" by newObject().
class ARBOR_API TDomain : public TObject {
public:
    bool isDomain() const override;
    ~TDomain() override;

protected:
    /// See TObject.
    TDomain(const std::string& name, TObject* parent);

private:
    friend class ClassRegistry;
    static TObject* create(const std::string& name, TObject* parent);
};

} // namespace arbor
