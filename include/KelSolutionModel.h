#pragma once

#include "KelExport.h"

#include <memory>
#include <string>
#include <vector>

namespace meridyn {

/// The phases and variables of a solution: their ids, unique names and attributes.
///
/// Ids      a new id is one more than the largest in use, or 1 if there is none. Phases and variables are counted
///          apart, variables in one sequence over all phases. Nothing but attributes is ever removed.
/// Phases   -1 is the mixture phase, "<Mixture>". It appears with the first variable that is created for it, and
///          from then on is the largest phase id until createPhase makes another, which is then 0.
/// Names    unique among phases; among variables, unique within one phase. Compared byte for byte.
/// Results  true for success. On false an out-parameter is untouched unless its operation says otherwise. Nothing
///          is printed and nothing throws for a bad id or name.
/// Cost     look-ups by id or name are logarithmic; lists are linear in what they give.
///
/// Each phase and variable has named string attributes. "Dataset Name" is one of them, set to the unique name at
/// creation: it can be added, read and removed like any other, only the lists of names leave it out.
class KEL_API KelSolutionModel {
public:
    /// An empty model.
    KelSolutionModel();
    ~KelSolutionModel();
    KelSolutionModel(const KelSolutionModel&) = delete;
    KelSolutionModel& operator=(const KelSolutionModel&) = delete;

    // ---- phases ----------------------------------------------------------------------

    /// Creates a phase, with its unique name as its dataset name.
    ///
    /// @param id  the id of the new phase; the id of the existing one if the name is taken (then false). When the
    ///            ids of a short are used up: false, nothing is stored and `id` holds the number that wrapped.
    bool createPhase(const std::string& name, short& id);

    /// Finds the phase of that name; of two, the smaller id. There are two only where a phase was created as
    /// "<Mixture>" before the mixture itself appeared.
    bool findPhaseByUniqueName(const std::string& name, short& id) const;

    /// Gives the unique name of a phase.
    bool getUniqueNameOfPhase(short id, std::string& name) const;

    /// Whether the phase exists. The mixture does once a variable was created for it.
    bool hasPhase(short id) const;

    /// Replaces `ids` with the ids of all phases, ascending.
    void getPhases(std::vector<short>& ids) const;

    // ---- variables -------------------------------------------------------------------

    /// Creates a variable, with its unique name as its dataset name.
    ///
    /// @param phase  the phase it belongs to; need not have been created. -1 brings the mixture phase into being,
    ///               also when the call goes on to fail.
    /// @param id     the id of the new variable; the id of the existing one if the phase has one of that name (then
    ///               false). When the ids of an int are used up: false, nothing is stored and `id` holds the number
    ///               that wrapped.
    bool createVariable(short phase, const std::string& name, int& id);

    /// The same for the mixture phase.
    bool createVariable(const std::string& name, int& id);

    /// Finds the variable of that name in a phase.
    bool findVariableByUniqueName(short phase, const std::string& name, int& id) const;

    /// The same for the mixture phase.
    bool findVariableByUniqueName(const std::string& name, int& id) const;

    /// Gives the unique name of a variable of any phase.
    bool getUniqueNameOfVariable(int id, std::string& name) const;

    /// Whether the variable exists and belongs to the phase.
    bool hasVariable(short phase, int id) const;

    /// Whether the variable belongs to the mixture phase. False for those of other phases.
    bool hasVariable(int id) const;

    /// Replaces `ids` with the ids of the phase's variables, ascending.
    void getVariables(short phase, std::vector<int>& ids) const;

    /// The same for the mixture phase.
    void getVariables(std::vector<int>& ids) const;

    // ---- attributes of phases --------------------------------------------------------

    /// Sets an attribute of a phase, new or not. False if the phase does not exist.
    bool addAttributeOfPhase(short id, const std::string& name, const std::string& value);

    /// Gives an attribute of a phase.
    bool getAttributeOfPhase(short id, const std::string& name, std::string& value) const;

    /// Removes an attribute of a phase. False if it did not have one of that name.
    bool removeAttributeOfPhase(short id, const std::string& name);

    /// Replaces `names` with the names of a phase's attributes, in byte order, without "Dataset Name". False, with an
    /// empty list, if the phase never had an attribute (the mixture, for one, has none of its own).
    bool getAttributeNamesOfPhase(short id, std::vector<std::string>& names) const;

    /// Sets the dataset name of a phase. False, changing nothing, for an empty name or a phase that does not exist.
    bool setDatasetNameOfPhase(short id, const std::string& name);

    /// Gives the dataset name of a phase; empty, and false, if it has none. The unique name does not stand in.
    bool getDatasetNameOfPhase(short id, std::string& name) const;

    // ---- attributes of variables -----------------------------------------------------

    /// Sets an attribute of a variable, new or not. False if the variable does not exist.
    bool addAttributeOfVariable(int id, const std::string& name, const std::string& value);

    /// Gives an attribute of a variable.
    bool getAttributeOfVariable(int id, const std::string& name, std::string& value) const;

    /// Removes an attribute of a variable. False if it did not have one of that name.
    bool removeAttributeOfVariable(int id, const std::string& name);

    /// Replaces `names` with the names of a variable's attributes, in byte order, without "Dataset Name". False, with
    /// an empty list, if there is no such variable.
    bool getAttributeNamesOfVariable(int id, std::vector<std::string>& names) const;

    /// Sets the dataset name of a variable. False, changing nothing, for an empty name or a variable that does not
    /// exist.
    bool setDatasetNameOfVariable(int id, const std::string& name);

    /// Gives the dataset name of a variable; empty, and false, if it has none. The unique name does not stand in.
    bool getDatasetNameOfVariable(int id, std::string& name) const;

    // ---- model -----------------------------------------------------------------------

    /// Forgets everything: the next ids are 1 again.
    void clearModel();

private:
    bool addAttributeToPhase(short id, const std::string& name, const std::string& value);
    bool addAttributeToVariable(int id, const std::string& name, const std::string& value);

    struct Record;
    std::unique_ptr<Record> _record;
};

} // namespace meridyn
