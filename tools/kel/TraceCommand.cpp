#include "Command.h"
#include "Interrupt.h"
#include "KelTransfer.h"
#include "Model.h"
#include "TraceWriter.h"

#include <iostream>
#include <memory>

namespace meridyn::tool {

namespace {

struct Options {
    std::string file;
    std::string format;
    MeshChoice mesh;
    bool caseOnly = false;
    bool dataOnly = false;
};

/// Standard output with all lines escaped, as long as this lives.
class EscapedOutput {
public:
    EscapedOutput() : _buffer(std::cout.rdbuf()) { std::cout.rdbuf(&_buffer); }
    ~EscapedOutput() { std::cout.rdbuf(_before); }
    EscapedOutput(const EscapedOutput&) = delete;
    EscapedOutput& operator=(const EscapedOutput&) = delete;

private:
    std::streambuf* _before = std::cout.rdbuf();
    EscapingBuffer _buffer;
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

std::vector<KelMeshKey> chosenMeshes(const Options& options, Model& model)
{
    const KelDataClass dataClass = model.has(KEL_CASE) && !options.dataOnly ? KEL_CASE : KEL_DATA;
    std::vector<KelMeshKey> keys;
    model.open(dataClass);
    for (const MeshName& mesh : model.chosenMeshes(dataClass))
        keys.push_back({mesh.mesh, mesh.target, mesh.partition});
    model.close();
    return keys;
}

void runTrace(const Options& options, Session& session)
{
    Model model(options.file, options.format, options.mesh);
    TraceWriter writer;
    session.library.speak();
    const EscapedOutput escaped;
    KelTransfer transfer(model.reader(), writer);
    if (options.mesh.isGiven())
        transfer.setMeshes(chosenMeshes(options, model));
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
    addMeshOptions(*command, options->mesh);
    addInputOptions(*command, options->format);
    command->callback([options, &session] { runTrace(*options, session); });
}

} // namespace meridyn::tool
