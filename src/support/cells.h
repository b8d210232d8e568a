// Singly linked cells: the program's lists all link through a `next` field.
#pragma once

template <class CELL> CELL* reverse_cells(CELL* list) {
    CELL* out = nullptr;
    while (list) {
        CELL* next = list->next;
        list->next = out;
        out = list;
        list = next;
    }
    return out;
}

// Deletes the cells, not what they point to; returns null for assigning back.
template <class CELL> CELL* erase_cells(CELL* list) {
    while (list) {
        CELL* next = list->next;
        delete list;
        list = next;
    }
    return nullptr;
}
