#include "KelMessage.h"

namespace meridyn {

KelMessage::KelMessage(Type type, const std::string& message, const std::string& function)
    : _type(type), _message(message), _function(function)
{}
KelMessage::KelMessage(const KelMessage& other) = default;
KelMessage& KelMessage::operator=(const KelMessage& other) = default;
KelMessage::~KelMessage() = default;

KelMessage::Type KelMessage::getType() const
{
    return _type;
}

std::string KelMessage::getMessage() const
{
    return _message;
}

std::string KelMessage::getFunction() const
{
    return _function;
}

KelFatal::KelFatal(const std::string& message, const std::string& function)
    : KelMessage(KEL_MESSAGE_FATAL, message, function)
{}
KelFatal::KelFatal(const KelFatal& other) = default;
KelFatal& KelFatal::operator=(const KelFatal& other) = default;
KelFatal::~KelFatal() = default;

KelError::KelError(const std::string& message, const std::string& function)
    : KelMessage(KEL_MESSAGE_ERROR, message, function)
{}
KelError::KelError(const KelError& other) = default;
KelError& KelError::operator=(const KelError& other) = default;
KelError::~KelError() = default;

KelWarning::KelWarning(const std::string& message, const std::string& function)
    : KelMessage(KEL_MESSAGE_WARNING, message, function)
{}
KelWarning::KelWarning(const KelWarning& other) = default;
KelWarning& KelWarning::operator=(const KelWarning& other) = default;
KelWarning::~KelWarning() = default;

KelInfo::KelInfo(const std::string& message, const std::string& function)
    : KelMessage(KEL_MESSAGE_INFO, message, function)
{}
KelInfo::KelInfo(const KelInfo& other) = default;
KelInfo& KelInfo::operator=(const KelInfo& other) = default;
KelInfo::~KelInfo() = default;

KelInternal::KelInternal(const std::string& message, const std::string& function)
    : KelMessage(KEL_MESSAGE_INTERNAL, message, function)
{}
KelInternal::KelInternal(const KelInternal& other) = default;
KelInternal& KelInternal::operator=(const KelInternal& other) = default;
KelInternal::~KelInternal() = default;

} // namespace meridyn
