#include "ir/types.h"

TYPE_PKG* tp;
int TYPE_PKG::abi;
