// Inside the simplifier: the folding of constants shared by its parts.
#pragma once

struct NODE;

// A node of float kind, or one with an FCON operand, whose operands are all
// constants (ICON or FCON): its value as the target computes it. Conversions
// (SCONV) between integers and floats and between float formats fold here
// too. Returns the node unchanged when it cannot be folded exactly.
NODE* fold_float_node(NODE* t);
