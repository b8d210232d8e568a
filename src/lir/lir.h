// The low-level register SSA form, which lives inside one step.
#pragma once

// Converts the current function to LIR, runs the group's passes (SSA entry,
// dead code elimination and exit when with_ssa) and converts it back.
void run_LIR_group(const char* name, bool with_ssa);
