#include "KelMessageRegistrar.h"

namespace meridyn {

KelMessageRegistrar::KelMessageRegistrar() = default;
KelMessageRegistrar::KelMessageRegistrar(const KelMessageRegistrar& other) = default;
KelMessageRegistrar& KelMessageRegistrar::operator=(const KelMessageRegistrar& other) = default;
KelMessageRegistrar::~KelMessageRegistrar() = default;

} // namespace meridyn
