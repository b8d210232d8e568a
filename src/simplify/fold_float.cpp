// Folding of floating constants in the target's formats.
#include "simplify/fold.h"

// Until the target's floating point is simulated nothing is folded: a
// value from the host's arithmetic could differ from the target's.
NODE* fold_float_node(NODE* t) { return t; }
