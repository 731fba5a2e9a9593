#pragma once

#include "KelExport.h"

#include <string>

namespace meridyn {

/// A report of the library or of a format: how grave it is, what is shown to the user, and who raised it.
///
/// Records are values: a sink copies them, and a copy carries all three fields.
class KEL_API KelMessage {
public:
    /// Severity. The numbers are part of the interface; a value outside the list is kept as it is and its
    /// text is shown as "Unknown:".
    enum Type : int {
        KEL_MESSAGE_FATAL = 0,   ///< the program cannot go on
        KEL_MESSAGE_ERROR = 1,   ///< the operation failed
        KEL_MESSAGE_WARNING = 2, ///< the operation went on, with something left out or assumed
        KEL_MESSAGE_INFO = 3,    ///< nothing is wrong
        KEL_MESSAGE_INTERNAL = 4 ///< for the developers of a format
    };

    /// @param message   the text for the user, without a severity prefix
    /// @param function  name of the operation that raises it, e.g. "setZoneSize"
    KelMessage(Type type, const std::string& message, const std::string& function);
    KelMessage(const KelMessage& other);
    KelMessage& operator=(const KelMessage& other);
    virtual ~KelMessage();

    /// The severity.
    Type getType() const;
    /// The text for the user.
    std::string getMessage() const;
    /// The name of the operation that raised the record.
    std::string getFunction() const;

private:
    Type _type;
    std::string _message;
    std::string _function;
};

/// A record of the severity KEL_MESSAGE_FATAL.
class KEL_API KelFatal : public KelMessage {
public:
    KelFatal(const std::string& message, const std::string& function); ///< As KelMessage, the severity fixed.
    KelFatal(const KelFatal& other);
    KelFatal& operator=(const KelFatal& other);
    ~KelFatal() override;
};

/// A record of the severity KEL_MESSAGE_ERROR.
class KEL_API KelError : public KelMessage {
public:
    KelError(const std::string& message, const std::string& function); ///< As KelMessage, the severity fixed.
    KelError(const KelError& other);
    KelError& operator=(const KelError& other);
    ~KelError() override;
};

/// A record of the severity KEL_MESSAGE_WARNING.
class KEL_API KelWarning : public KelMessage {
public:
    KelWarning(const std::string& message, const std::string& function); ///< As KelMessage, the severity fixed.
    KelWarning(const KelWarning& other);
    KelWarning& operator=(const KelWarning& other);
    ~KelWarning() override;
};

/// A record of the severity KEL_MESSAGE_INFO.
class KEL_API KelInfo : public KelMessage {
public:
    KelInfo(const std::string& message, const std::string& function); ///< As KelMessage, the severity fixed.
    KelInfo(const KelInfo& other);
    KelInfo& operator=(const KelInfo& other);
    ~KelInfo() override;
};

/// A record of the severity KEL_MESSAGE_INTERNAL.
class KEL_API KelInternal : public KelMessage {
public:
    KelInternal(const std::string& message, const std::string& function); ///< As KelMessage, the severity fixed.
    KelInternal(const KelInternal& other);
    KelInternal& operator=(const KelInternal& other);
    ~KelInternal() override;
};

} // namespace meridyn
