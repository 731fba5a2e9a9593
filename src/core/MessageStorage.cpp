#include "core/MessageStorage.h"

namespace meridyn {

static std::string formatted(const KelMessage& message)
{
    switch (message.getType()) {
    case KelMessage::KEL_MESSAGE_FATAL:
        return "Fatal:\n\t" + message.getMessage();
    case KelMessage::KEL_MESSAGE_ERROR:
        return "Error:\n\t" + message.getMessage();
    case KelMessage::KEL_MESSAGE_WARNING:
        return "Warning:\n\t" + message.getMessage();
    case KelMessage::KEL_MESSAGE_INFO:
        return "Info:\n\t" + message.getMessage();
    case KelMessage::KEL_MESSAGE_INTERNAL:
        return "Internal:\n\t" + message.getMessage();
    }
    return "Unknown:\n\t" + message.getMessage();
}

MessageStorage::MessageStorage() = default;
MessageStorage::~MessageStorage() = default;

void MessageStorage::registerMessage(const KelMessage& message)
{
    if (_resetPending) {
        clear();
    } else if (_collectedTypes.count(message.getType()) != 0) {
        removeMessages(message.getType());
    }
    _messages.push_back(message);
    ++_count;
}

bool MessageStorage::hasMessages(int type) const
{
    for (const KelMessage& message : _messages) {
        if (message.getType() == type) {
            return true;
        }
    }
    return false;
}

std::vector<std::string> MessageStorage::collectMessages(int type, bool format)
{
    std::vector<std::string> texts;
    for (const KelMessage& message : _messages) {
        if (message.getType() == type) {
            texts.push_back(format ? formatted(message) : message.getMessage());
        }
    }
    _collectedTypes.insert(type);
    return texts;
}

void MessageStorage::removeMessages(int type)
{
    _count -= _messages.remove_if([type](const KelMessage& message) { return message.getType() == type; });
    _collectedTypes.erase(type);
    if (_collectedTypes.empty()) {
        _resetPending = false;
    }
}

void MessageStorage::clear()
{
    _messages.clear();
    _count = 0;
    _resetPending = false;
    _collectedTypes.clear();
}

} // namespace meridyn
