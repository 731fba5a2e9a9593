#include "Command.h"
#include "Interrupt.h"
#include "KelConsumer.h"
#include "KelTransfer.h"
#include "Model.h"

#include <memory>

namespace meridyn::tool {

namespace {

/// The bare writer, which prints what it is given, as a target that a transfer can drive.
class TraceWriter : public KelConsumer {
public:
    TraceWriter() : KelConsumer("kel") {}

    bool startWriting(KelDataClass dataClass) override
    {
        std::cout << (dataClass == KEL_CASE ? "Case\n" : "Data\n") << std::endl;
        return true;
    }

    bool endWriting(KelDataClass) override { return true; }

    void startWritingPhase(short phaseId) const override
    {
        KelConsumer::startWritingPhase(phaseId);
        setActivePhase(phaseId);
    }
};

struct Options {
    std::string file;
    std::string format;
    bool caseOnly = false;
    bool dataOnly = false;
};

/// False when the output takes no more, which the end of the run reports.
bool trace(Model& model, KelTransfer& transfer, KelDataClass dataClass)
{
    if (dataClass == KEL_CASE ? transfer.copyCase() : transfer.copyData())
        return true;
    if (!transfer.wasCancelled())
        throw Failure(aboutFile(model.path(), transfer.problem()));
    if (wasInterrupted())
        throw Interrupted(aboutFile(model.path(), "interrupted"));
    return false;
}

void runTrace(const Options& options, Session& session)
{
    Model model(options.file, options.format);
    TraceWriter writer;
    session.library.speak();
    KelTransfer transfer(model.reader(), writer);
    transfer.setProgress([](const KelTransferProgress&) { return !wasInterrupted() && std::cout.good(); });
    if (!options.dataOnly && model.has(KEL_CASE) && !trace(model, transfer, KEL_CASE))
        return;
    if (!options.caseOnly && model.has(KEL_DATA)) {
        if (options.dataOnly && model.has(KEL_CASE))
            model.open(KEL_CASE); // values belong to zones
        trace(model, transfer, KEL_DATA);
    }
    std::cout.flush();
}

} // namespace

void addTraceCommand(CLI::App& tool, Session& session)
{
    CLI::App* command =
        addCommand(tool, "trace", "Shows a model as the calls that write it",
                   {"kel trace cube.case.kel", "kel trace --data-only \"box:2x2x2 fields:1 levels:2\""});
    auto options = std::make_shared<Options>();
    command->add_option("FILE", options->file, "Model to show")->required();
    command->add_flag("--case-only", options->caseOnly, "Leave the data out");
    command->add_flag("--data-only", options->dataOnly, "Leave the case out")->excludes("--case-only");
    addInputFormatOption(*command, options->format);
    command->callback([options, &session] { runTrace(*options, session); });
}

} // namespace meridyn::tool
