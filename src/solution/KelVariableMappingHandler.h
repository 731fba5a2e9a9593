#pragma once

#include "solution/MappingDocument.h"

#include <stack>
#include <vector>
#include <xercesc/sax/HandlerBase.hpp>

namespace meridyn {

/// Collects header and variables while a mapping file is parsed.
///
/// Every element but "attribute" opens a scope, which takes the key and value pairs of the "attribute" elements
/// directly inside. What becomes of a scope is decided where its element ends: header, variable, or nothing.
class KelVariableMappingHandler : public xercesc::HandlerBase {
public:
    KelVariableMappingHandler();
    ~KelVariableMappingHandler() override;

    void startElement(const XMLCh* name, xercesc::AttributeList& attributes) override;
    void endElement(const XMLCh* name) override;

    /// Forgets everything. Reached only where the handler is installed for errors too.
    void fatalError(const xercesc::SAXParseException& problem) override;

    /// What was collected so far.
    MappingDocument& document();

private:
    void moveVariable(Texts& scope);

    MappingDocument _document;
    std::stack<Texts, std::vector<Texts>> _scopes;
};

} // namespace meridyn
