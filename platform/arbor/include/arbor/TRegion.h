#pragma once

#include "arbor/TObject.h"

#include <string>

namespace arbor {

/// A node that stands for a region of the model; it adds nothing but its class. Made as "TRegion" by newObject().
class ARBOR_API TRegion : public TObject {
public:
    bool isRegion() const override;
    ~TRegion() override;

protected:
    /// See TObject.
    TRegion(const std::string& name, TObject* parent);

private:
    friend class ClassRegistry;
    static TObject* create(const std::string& name, TObject* parent);
};

} // namespace arbor
