// Reads of const objects of the file whose one initial value is known become
// that value.
#include <string>
#include <unordered_map>

#include "driver/driver.h"
#include "driver/options.h"
#include "ifile/ifile.h"
#include "ir/bblk.h"
#include "ir/infix.h"
#include "ir/ir.h"
#include "ir/node.h"
#include "ir/symtab.h"
#include "ir/types.h"
#include "scalar/scalar.h"
#include "scalar/scalar_internal.h"

namespace {

// Writing a const object is undefined, so its initial value is its value.
bool has_constant_value(const SYMTAB* s) {
    return s->known_value && !is_local_symbol(s) && symbol_is_immutable(s) &&
           !symbol_is_volatile(s) && s->type && s->type->is_scalar();
}

} // namespace

void propagate_global_constants(LIST* stmts) {
    if (opt_level() < 2)
        return;
    std::unordered_map<const SYMTAB*, NODE*> values;
    for (SYMTAB* s = global_symbols; s; s = s->next)
        if (has_constant_value(s))
            values[get_sym_def_for_decl(s)] = s->known_value;
    // A declaration names the definition's value.
    for (SYMTAB* s = global_symbols; s; s = s->next)
        if (s->sclass == SC_EXTERN_DECL && values.count(get_sym_def_for_decl(s)))
            values[s] = values[get_sym_def_for_decl(s)];
    if (values.empty())
        return;
    for (LIST* cell = stmts; cell; cell = cell->next) {
        if (!cell->tree || tree_is_arg_prolog(cell->tree))
            continue;
        if (print_debug)
            walk_statement_refs(cell->tree, [&](const SCALAR_REF& r) {
                auto it = r.kind == SCALAR_REF::USE ? values.find(r.sym) : values.end();
                if (it != values.end())
                    dprintf("\n\t(%ld) propagate_global_constants() is replacing %s with %s\n",
                            cell->psn ? static_cast<long>(cell->psn->line) : 0L, r.sym->name,
                            stmt2infix(it->second).c_str());
            });
        substitute_values(cell, values);
    }
}
