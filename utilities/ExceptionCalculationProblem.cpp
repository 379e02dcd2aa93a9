#include "utilities/ExceptionCalculationProblem.h"

namespace Utilities {

ExceptionCalculationProblem::~ExceptionCalculationProblem() = default;

}
