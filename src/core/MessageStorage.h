#pragma once

#include "KelMessage.h"
#include "KelMessageRegistrar.h"
#include "KelTypes.h"

#include <list>
#include <set>
#include <string>
#include <vector>

namespace meridyn {

/// A mailbox of message records.
///
/// Collecting a severity leaves its records in place, but marks the severity: the next record of it sweeps those
/// that were there first. Severities are swept separately. Types outside the enumeration are kept like any other.
class MessageStorage : public KelMessageRegistrar {
public:
    MessageStorage();
    ~MessageStorage() override;

    void registerMessage(const KelMessage& message) override;

    /// Whether a record of the type is stored, collected or not.
    bool hasMessages(int type) const;
    /// The texts of all records of the type, oldest first, and the type marked as collected, also without records.
    std::vector<std::string> collectMessages(int type, bool formatted);
    /// Drops the records of the type and its mark.
    void removeMessages(int type);

protected:
    /// Makes the next record empty the whole store first. No operation of the library sets it; a store derived
    /// from this one may.
    bool _resetPending = false;

    /// Number of stored records.
    unsigned64 count() const { return _count; }

private:
    void clear();

    std::list<KelMessage> _messages; ///< in order of arrival
    unsigned64 _count = 0;
    std::set<int> _collectedTypes; ///< handed out and not yet swept
};

} // namespace meridyn
