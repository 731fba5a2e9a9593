#include "KelVersion.h"

#include "text/Printing.h"

#include <atomic>

namespace meridyn {

// Plain arrays: the notices may be printed while other files' statics are still being made.
static const char productWord[] = "MERIDYN";
static const char releaseLabel[] = "2025 R1";
static const char sdkName[] = "Fluids file SDK";
static const char bannerIndent[] = "              "; // 14 blanks

static const char copyrightLine[] = "Copyright 2021-2025 MERIDYN";
static const char prohibition[] = "Unauthorised use, distribution or duplication of this software is prohibited.";
static const char exportControl[] = "This software may be subject to export control laws and regulations.";
static const char furtherInformation[] = "Further information is found in the documents that come with it.";

KelVersion::KelVersion() = default;
KelVersion::KelVersion(const KelVersion&) = default;
KelVersion& KelVersion::operator=(const KelVersion&) = default;
KelVersion::~KelVersion() = default;

unsigned int KelVersion::getMajor()
{
    return KEL_VERSION_MAJOR;
}

unsigned int KelVersion::getMinor()
{
    return KEL_VERSION_MINOR;
}

unsigned int KelVersion::getPatch()
{
    return KEL_VERSION_PATCH;
}

bool KelVersion::isBeta()
{
    return false;
}

std::string KelVersion::getSHA()
{
    return "d93e6bf8";
}

std::string KelVersion::apiVersionAsString(const std::string& separator)
{
    return std::to_string(getMajor()) + separator + std::to_string(getMinor());
}

std::string KelVersion::meridynApplicationVersion(const std::string& application)
{
    return std::string(productWord) + " " + application + " " + releaseLabel;
}

std::string KelVersion::copyright(bool withWarning)
{
    const std::string notice = copyrightLine;
    return withWarning ? notice + " " + prohibition : notice;
}

static void printIndented(const std::string& text)
{
    printFlushedLine(bannerIndent + text); // flushed: it stands before whatever a solver prints in C
}

void printCopyrightNotice()
{
    printFlushedLine("");
    printFlushedLine("");
    printIndented("Welcome to " + KelVersion::meridynApplicationVersion(sdkName));
    printFlushedLine("");
    printIndented(KelVersion::copyright(false)); // the warning follows on a line of its own
    printIndented(prohibition);
    printIndented(exportControl);
    printIndented(furtherInformation);
}

void printSDKVersion()
{
    static std::atomic<bool> noticePrinted{false}; // no lock: a callback that prints may ask for the banner itself
    if (!noticePrinted.exchange(true))
        printCopyrightNotice();
    printFlushedLine("");
    printFlushedLine("");
    printIndented(KelVersion::meridynApplicationVersion(sdkName) + "[" + KelVersion::getSHA() + "]");
    printIndented("can produce abridged version of MERIDYN Fluids 19.0 files; and");
    printIndented("can read files produced by the following MERIDYN Fluids versions:");
    printIndented(std::string(bannerIndent) + "16.0 to " + KelVersion::apiVersionAsString("."));
    printFlushedLine("");
    printFlushedLine("");
}

} // namespace meridyn
