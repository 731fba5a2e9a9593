#include "core/DataInterface.h"
#include "KelBase.h"

namespace meridyn {

bool KelBase::hasError() const
{
    return _data->hasMessages(KelMessage::KEL_MESSAGE_ERROR);
}

bool KelBase::hasWarning() const
{
    return _data->hasMessages(KelMessage::KEL_MESSAGE_WARNING);
}

bool KelBase::hasInfo() const
{
    return _data->hasMessages(KelMessage::KEL_MESSAGE_INFO);
}

static std::vector<std::string> collect(MessageStorage& messages, int type, bool formatted, bool clear)
{
    std::vector<std::string> texts = messages.collectMessages(type, formatted);
    if (clear) {
        messages.removeMessages(type);
    }
    return texts;
}

std::vector<std::string> KelBase::getErrors(bool formatted, bool clear)
{
    return collect(*_data, KelMessage::KEL_MESSAGE_ERROR, formatted, clear);
}

std::vector<std::string> KelBase::getWarnings(bool formatted, bool clear)
{
    return collect(*_data, KelMessage::KEL_MESSAGE_WARNING, formatted, clear);
}

std::vector<std::string> KelBase::getInfos(bool formatted, bool clear)
{
    return collect(*_data, KelMessage::KEL_MESSAGE_INFO, formatted, clear);
}

KelMessageRegistrar* KelBase::getMessageRegistrar() const
{
    return _data.get();
}

} // namespace meridyn
