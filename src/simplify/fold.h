// Inside the simplifier: the folding of constants shared by its parts.
#pragma once

#include <string>

struct NODE;
struct TYPE;
struct simul_fval;

// A node of float kind, or one with an FCON operand, whose operands are all
// constants (ICON or FCON): its value as the target computes it. Conversions
// (SCONV) between integers and floats and between float formats fold here
// too. Returns the node unchanged when it cannot be folded exactly.
NODE* fold_float_node(NODE* t);

// Floating text rounded to the target's double (is_double non-zero) or
// single, in exact hexadecimal form ("%a").
std::string normalize_fcon(const char* text, int is_double);
// Rounds v in place to the target's format of the floating type t; any other
// type leaves it. Returns 1, with fp_error set, for an overflow to infinity
// or an underflow to zero, which are the target's results too.
int truncate_fval_to_target(simul_fval* v, TYPE* t);
