#include "KelFileIO.h"

#include <charconv>
#include <stdexcept>

namespace meridyn {

KelFileIO::KelFileIO() = default;
KelFileIO::KelFileIO(const KelFileIO& other) = default;
KelFileIO& KelFileIO::operator=(const KelFileIO& other) = default;
KelFileIO::~KelFileIO() = default;

/// The text kept for a data class, or null.
static const std::string* find(const std::map<KelDataClass, std::string>& texts, KelDataClass dataClass)
{
    const auto entry = texts.find(dataClass);
    return entry == texts.end() ? nullptr : &entry->second;
}

static bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// The integer at the start of a text, with what the standard conversion accepts: blanks and a sign in front of it, and
/// anything behind. Unlike that one it throws the same texts with every standard library.
static int leadingInt(const std::string& text, std::size_t position)
{
    const char* begin = text.data() + position;
    const char* const end = text.data() + text.size();
    while (begin != end && (*begin == ' ' || (*begin >= '\t' && *begin <= '\r')))
        ++begin;
    if (begin != end && *begin == '+' && begin + 1 != end && isDigit(begin[1]))
        ++begin;

    int value = 0;
    const auto result = std::from_chars(begin, end, value);
    if (result.ec == std::errc::invalid_argument)
        throw std::invalid_argument("invalid stoi argument");
    if (result.ec == std::errc::result_out_of_range)
        throw std::out_of_range("stoi argument out of range");
    return value;
}

void KelFileIO::setFile(const std::string& fileName, KelDataClass dataClass)
{
    _files[dataClass] = fileName;
}

std::string KelFileIO::getFile(KelDataClass dataClass) const
{
    const std::string* name = find(_files, dataClass);
    return name ? *name : "";
}

std::vector<KelDataClass> KelFileIO::getDataClasses() const
{
    std::vector<KelDataClass> dataClasses;
    for (const auto& entry : _files)
        dataClasses.push_back(entry.first);
    return dataClasses;
}

void KelFileIO::setFileVersion(KelDataClass dataClass, const std::string& version)
{
    _fileVersions[dataClass] = version;
}

bool KelFileIO::getFileVersion(KelDataClass dataClass, std::string& version) const
{
    const std::string* text = find(_fileVersions, dataClass);
    const bool known = text && !text->empty() && isDigit(text->front());
    version = known ? *text : "Unknown";
    return known;
}

bool KelFileIO::getFileVersion(KelDataClass dataClass, int& major, int& minor, int& patch) const
{
    major = minor = patch = -1;
    std::string version;
    if (!getFileVersion(dataClass, version))
        return false;

    // One after the other into the caller's variables: what was parsed before a part throws stays there.
    major = leadingInt(version, 0);
    minor = patch = 0;
    const std::size_t firstPoint = version.find('.');
    if (firstPoint == std::string::npos)
        return true;
    minor = leadingInt(version, firstPoint + 1);
    const std::size_t secondPoint = version.find('.', firstPoint + 1);
    if (secondPoint != std::string::npos)
        patch = leadingInt(version, secondPoint + 1);
    return true;
}

} // namespace meridyn
