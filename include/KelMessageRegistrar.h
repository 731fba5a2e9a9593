#pragma once

#include "KelExport.h"

namespace meridyn {

class KelMessage;

/// A sink for message records. Every KelBase is one (KelBase::getMessageRegistrar); tools may write their own.
class KEL_API KelMessageRegistrar {
public:
    /// A sink holds nothing of its own here; copies and assignments of this class do nothing.
    KelMessageRegistrar();
    KelMessageRegistrar(const KelMessageRegistrar& other);
    KelMessageRegistrar& operator=(const KelMessageRegistrar& other);
    virtual ~KelMessageRegistrar();

    /// Takes a record. The record is the caller's and need not outlive the call: a sink that keeps it copies it.
    virtual void registerMessage(const KelMessage& message) = 0;
};

} // namespace meridyn
